// Administrative and special data: references across documents, copies of whole documents,
// text carriers, roles and the lazily made texts of special data.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TesselODX220Model.h"

namespace NODX220 {
namespace {

using NTesselSharedUtil::Logging::VLogging;
using NTesselSharedUtil::Logging::VLogLevel;

// Collects what the model logs while it lives; logging is restored afterwards.
class LogCapture {
public:
    LogCapture()
    {
        VLogging& logging = VLogging::GetInstance();
        logging.SetEnabled(true);
        logging.SetGlobalLogGroupMask(0xFFFFFFFFu);
        logging.SetGlobalLogLevel(VLogLevel::eDebug);
        logging.SetSink([this](VLogLevel::VSeverityLevel, uint32_t, const char* text) {
            lines.emplace_back(text);
        });
    }
    ~LogCapture()
    {
        VLogging& logging = VLogging::GetInstance();
        logging.SetSink({});
        logging.SetEnabled(false);
        logging.SetGlobalLogLevel(VLogLevel::eError);
    }
    std::vector<std::string> lines;
};

VOdxlink& IdLink(VOdxElement& owner, const char* id)
{
    VOdxlink& link = VOdxFactory::Instance().MakeOdxlink(owner, TAG_ODXLINK);
    link.SetIdRef(id);
    return link;
}

// A comparam subset "S" with a company and its team member, and a container "C" whose
// administrative data refer to both, one reference naming its document and one not.
class AdminDataTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        mSubset = &mFactory.MakeComparamSubset(mRoot, TAG_COMPARAM_SUBSET);
        mSubset->HandleTChar(TAG_SHORT_NAME, "S");
        mRoot.HandleTag(TAG_COMPARAM_SUBSET, *mSubset);
        mCompany = &mFactory.MakeCompanyData(*mSubset, TAG_COMPANY_DATA);
        mCompany->HandleTChar(TAG_SHORT_NAME, "ACME");
        mCompany->SetId("company.1");
        mSubset->CompanyDataCollection().HandleTag(TAG_COMPANY_DATA, *mCompany);
        mMember = &mFactory.MakeTeamMember(*mCompany, TAG_TEAM_MEMBER);
        mMember->HandleTChar(TAG_SHORT_NAME, "jdoe");
        mMember->SetId("member.1");
        mCompany->TeamMemberCollection().HandleTag(TAG_TEAM_MEMBER, *mMember);

        VDiagLayerContainer& container = mFactory.MakeDiagLayerContainer(mRoot, TAG_DIAG_LAYER_CONTAINER);
        container.HandleTChar(TAG_SHORT_NAME, "C");
        mRoot.HandleTag(TAG_DIAG_LAYER_CONTAINER, container);
        VAdminData& admin = mFactory.MakeAdminData(container, TAG_ADMIN_DATA);
        container.HandleTag(TAG_ADMIN_DATA, admin);

        VCompanyDocInfo& docInfo = mFactory.MakeCompanyDocInfo(admin, TAG_COMPANY_DOC_INFO);
        admin.CompanyDocInfoCollection().HandleTag(TAG_COMPANY_DOC_INFO, docInfo);
        mCompanyRef = &mFactory.MakeCompanyDataLink(docInfo, TAG_COMPANY_DATA_REF);
        VOdxlink& companyLink = IdLink(*mCompanyRef, "company.1");
        companyLink.SetDocref("S");
        companyLink.SetDoctype(eDoctypeComparamSubset);
        mCompanyRef->SetLink(companyLink);
        docInfo.HandleTag(TAG_COMPANY_DATA_REF, *mCompanyRef);

        VDocRevision& revision = mFactory.MakeDocRevision(admin, TAG_DOC_REVISION);
        admin.DocRevisionCollection().HandleTag(TAG_DOC_REVISION, revision);
        mMemberRef = &mFactory.MakeTeamMemberLink(revision, TAG_TEAM_MEMBER_REF);
        mMemberRef->SetLink(IdLink(*mMemberRef, "member.1"));
        revision.HandleTag(TAG_TEAM_MEMBER_REF, *mMemberRef);
    }
    void TearDown() override { mFactory.DestroyOdx(mRoot); }

    VOdxFactory& mFactory = VOdxFactory::Instance();
    VOdx& mRoot = mFactory.MakeOdx();
    VComparamSubset* mSubset = nullptr;
    VCompanyData* mCompany = nullptr;
    VTeamMember* mMember = nullptr;
    VCompanyDataLink* mCompanyRef = nullptr;
    VTeamMemberLink* mMemberRef = nullptr;
};

TEST_F(AdminDataTest, ReferencesAcrossDocumentsResolve)
{
    {
        LogCapture log;
        mRoot.GetOdxLinkSet().ResolveReferences(false);
        EXPECT_TRUE(log.lines.empty());
    }
    ASSERT_TRUE(mCompanyRef->HasCompanyData());
    EXPECT_EQ(&mCompanyRef->GetCompanyData(), mCompany);
    ASSERT_TRUE(mMemberRef->HasTeamMember());
    EXPECT_EQ(&mMemberRef->GetTeamMember(), mMember);
    // The reference without a document is written as seen from the container: into "S".
    VOdxlink& memberLink = *mMemberRef->GetLink().GetAsOdxlink();
    EXPECT_STREQ(memberLink.GetDocref(), "S");
    EXPECT_EQ(memberLink.GetDoctype(), eDoctypeComparamSubset);
    EXPECT_STREQ(mMemberRef->GetXPATH(eXPathShortName).GetBuffer(),
                 "ODX/DIAG-LAYER-CONTAINER[SHORT-NAME='C']/ADMIN-DATA/DOC-REVISIONS/DOC-REVISION[1]/TEAM-MEMBER-REF");
}

TEST_F(AdminDataTest, CopiedDocumentResolvesInItsOwnRight)
{
    mRoot.GetOdxLinkSet().ResolveReferences(true);
    VOdx& copy = mRoot.Clone(mRoot);
    ASSERT_EQ(copy.ComparamSubsetCollection().Count(), 1u);
    ASSERT_EQ(copy.DiagLayerContainerCollection().Count(), 1u);
    VComparamSubset& subsetCopy = *copy.ComparamSubsetCollection().Begin();
    VCompanyData& companyCopy = *subsetCopy.CompanyDataCollection().Begin();
    VTeamMember& memberCopy = *companyCopy.TeamMemberCollection().Begin();
    EXPECT_STREQ(companyCopy.GetId(), "company.1");
    EXPECT_EQ(copy.GetIdRefMap().Find(VYAString("member.1"), VYAString("S")),
              static_cast<VReferencable*>(&memberCopy));

    // The copy's links still point into the source until its own set is resolved.
    VDiagLayerContainer& containerCopy = *copy.DiagLayerContainerCollection().Begin();
    VDocRevision& revisionCopy = *containerCopy.GetAdminData().DocRevisionCollection().Begin();
    VOdxlink& linkCopy = *revisionCopy.GetTeamMemberRef().GetLink().GetAsOdxlink();
    EXPECT_EQ(&linkCopy.GetReferencable(), static_cast<VReferencable*>(mMember));
    {
        LogCapture log;
        copy.GetOdxLinkSet().ResolveReferences(false);
        EXPECT_TRUE(log.lines.empty());
    }
    EXPECT_EQ(&linkCopy.GetReferencable(), static_cast<VReferencable*>(&memberCopy));
    mFactory.DestroyOdx(copy);
    // The source is untouched by the copy's end.
    EXPECT_TRUE(mMember->IsReferencedById());
}

TEST(RolesTest, OwnerAndCollectionCollectTheSameList)
{
    VOdxFactory& factory = VOdxFactory::Instance();
    VOdx& root = factory.MakeOdx();
    VTeamMember& member = factory.MakeTeamMember(root, TAG_TEAM_MEMBER);
    factory.UnhandledElementCollection().Append(member);
    EXPECT_FALSE(member.HasRoles());
    EXPECT_TRUE(member.HandleTChar(TAG_ROLES, "a"));
    EXPECT_TRUE(member.HandleTChar(TAG_ROLES, "a"));
    EXPECT_TRUE(member.Roles().HandleTChar(TAG_ROLE, "b"));
    EXPECT_FALSE(member.HandleTChar(TAG_ROLE, "c"));
    EXPECT_FALSE(member.Roles().HandleTChar(TAG_ROLES, "c"));
    ASSERT_EQ(member.Roles().Count(), 3u);
    EXPECT_TRUE(member.HasRoles());
    VTeamMember& copy = member.Clone(root);
    factory.UnhandledElementCollection().Append(copy);
    EXPECT_EQ(copy.Roles().Count(), 3u);
    EXPECT_STREQ((*copy.Roles().Begin()).GetBuffer(), "a");
    factory.DestroyOdx(root);
}

class SpecialDataTest : public ::testing::Test {
protected:
    void TearDown() override
    {
        mFactory.DestroyOdx(mOther);
        mFactory.DestroyOdx(mRoot);
    }

    VOdxFactory& mFactory = VOdxFactory::Instance();
    VOdx& mRoot = mFactory.MakeOdx();
    VOdx& mOther = mFactory.MakeOdx();
};

TEST_F(SpecialDataTest, ValueTextsAreMadeOnlyWhenSet)
{
    VSd& value = mFactory.MakeSd(mRoot, TAG_SD);
    mFactory.UnhandledElementCollection().Append(value);
    EXPECT_STREQ(value.GetSi(), "");
    EXPECT_STREQ(value.GetTi(), "");
    EXPECT_STREQ(value.GetBaseMember(), "");
    EXPECT_FALSE(value.HasSi());
    EXPECT_FALSE(value.HasTi());
    value.SetSi("");
    EXPECT_TRUE(value.HasSi());
    EXPECT_TRUE(value.HandleTChar(TAG_BASE_MEMBER, "v"));
    EXPECT_FALSE(value.HandleTChar(TAG_SI, "x"));
    EXPECT_STREQ(value.GetBaseMember(), "v");
}

TEST_F(SpecialDataTest, ValuesStayInTheTextSetOfTheirOwnDocument)
{
    VSd& value = mFactory.MakeSd(mRoot, TAG_SD);
    value.SetTi("TI.value");
    VSd& copy = value.Clone(mOther);
    mFactory.UnhandledElementCollection().Append(copy);
    EXPECT_NE(mRoot.TextIdElements().Find(value), mRoot.TextIdElements().End());
    EXPECT_NE(mOther.TextIdElements().Find(copy), mOther.TextIdElements().End());
    VYAString textId;
    EXPECT_TRUE(mOther.TextIdElements().GetTextId(copy, textId));
    EXPECT_STREQ(textId.GetBuffer(), "TI.value");

    mFactory.DestroyElement(&value);
    EXPECT_TRUE(mRoot.TextIdElements().IsEmpty());
    EXPECT_EQ(mOther.TextIdElements().Count(), 1u);
}

TEST_F(SpecialDataTest, GroupsTakeEntriesByKindAndCopyThemInOrder)
{
    VSdg& group = mFactory.MakeSdg(mRoot, TAG_SDG);
    mFactory.UnhandledElementCollection().Append(group);
    EXPECT_FALSE(group.HasSdgSdChoiceCollection());
    EXPECT_FALSE(group.HasSdgCaptionLinkSdgCaptionChoice());
    EXPECT_THROW(group.GetSdgCaptionLinkSdgCaptionChoice(), VOdxException);

    VText& stranger = mFactory.MakeText(group, TAG_TEXT);
    EXPECT_FALSE(group.HandleTag(TAG_SD, stranger));
    mFactory.DestroyElement(&stranger);

    VSd& value = mFactory.MakeSd(group, TAG_SD);
    value.SetBaseMember("1");
    EXPECT_TRUE(group.HandleTag(TAG_SD, value));
    // The tag does not decide the class.
    VSdg& subgroup = mFactory.MakeSdg(group, TAG_SDG);
    EXPECT_TRUE(group.HandleTag(TAG_SD, subgroup));
    VSdgCaption& caption = mFactory.MakeSdgCaption(group, TAG_SDG_CAPTION);
    caption.HandleTChar(TAG_SHORT_NAME, "cap");
    EXPECT_TRUE(group.HandleTag(TAG_SDG_CAPTION, caption));
    EXPECT_EQ(caption.GetPadLockCount(), 1);

    VSdg& copy = group.Clone(mRoot);
    mFactory.UnhandledElementCollection().Append(copy);
    ASSERT_EQ(copy.SdgSdChoiceCollection().Count(), 2u);
    auto entry = copy.SdgSdChoiceCollection().Begin();
    EXPECT_TRUE((*entry).IsSd());
    EXPECT_STREQ((*entry).GetAsSd()->GetBaseMember(), "1");
    ++entry;
    EXPECT_TRUE((*entry).IsSdg());
    ASSERT_TRUE(copy.GetSdgCaptionLinkSdgCaptionChoice().IsSdgCaption());
    EXPECT_STREQ(copy.GetSdgCaptionLinkSdgCaptionChoice().GetAsSdgCaption()->GetShortName(), "cap");
    EXPECT_NE(copy.GetSdgCaptionLinkSdgCaptionChoice().GetAsSdgCaption(), &caption);
    EXPECT_STREQ(value.GetXPATH(eXPathPosition).GetBuffer(), "ODX/SDG/SdgSdChoice/SD[1]");
}

TEST_F(SpecialDataTest, WrongKindIsLoggedAndNull)
{
    VSdg& group = mFactory.MakeSdg(mRoot, TAG_SDG);
    mFactory.UnhandledElementCollection().Append(group);
    VSdgCaptionLink& captionRef = mFactory.MakeSdgCaptionLink(mRoot, TAG_SDG_CAPTION_REF);
    mFactory.UnhandledElementCollection().Append(captionRef);
    LogCapture log;
    EXPECT_EQ(group.GetAsSd(), nullptr);
    EXPECT_EQ(group.GetAsSdg(), &group);
    EXPECT_TRUE(captionRef.IsSdgCaptionRef());
    EXPECT_EQ(captionRef.GetAsSdgCaption(), nullptr);
    EXPECT_EQ(log.lines, (std::vector<std::string>{"ODX ERR: Element is not of type VSd",
                                                   "ODX ERR: Element is not of type VSdgCaption"}));
}

TEST_F(SpecialDataTest, DispatchReachesTheGroup)
{
    struct Recorder : VSpecialDataVisitor {
        void VisitSdg(VSdg& group) override { visited.push_back(&group); }
        std::vector<VSdg*> visited;
    } recorder;
    VSdg& group = mFactory.MakeSdg(mRoot, TAG_SDG);
    mFactory.UnhandledElementCollection().Append(group);
    recorder.DispatchSpecialData(group);
    EXPECT_EQ(recorder.visited, std::vector<VSdg*>{&group});
}

} // namespace
} // namespace NODX220
