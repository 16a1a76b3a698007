#pragma once

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "TesselODX220Model.h"

namespace ReferencesTests {

using namespace NODX220;
using NTesselSharedUtil::Logging::VLogging;
using NTesselSharedUtil::Logging::VLogLevel;

// Collects what is logged while it lives, at the given global level; restores the logger after.
class LogCapture {
public:
    struct Line {
        int level;
        std::string text;
    };

    explicit LogCapture(VLogLevel::VSeverityLevel level)
    {
        mLog.SetSink([this](VLogLevel::VSeverityLevel severity, uint32_t, const char* text) {
            lines.push_back({severity, text});
        });
        mLog.SetEnabled(true);
        mLog.SetGlobalLogGroupMask(0xFFFFFFFFu);
        mLog.SetGlobalLogLevel(level);
    }
    ~LogCapture()
    {
        mLog.SetSink({});
        mLog.SetEnabled(mEnabled);
        mLog.SetGlobalLogGroupMask(mMask);
        mLog.SetGlobalLogLevel(mLevel);
    }

    std::vector<Line> lines;

private:
    VLogging& mLog = VLogging::GetInstance();
    const bool mEnabled = mLog.IsEnabled();
    const uint32_t mMask = mLog.GetGlobalLogGroupMask();
    const VLogLevel::VSeverityLevel mLevel = mLog.GetGlobalLogLevel();
};

// An identification that a resolver can hand out.
class TestIdent : public IIdentIf {
public:
    bool IsExpectedIdent() const override { return false; }
    bool IsOwnIdent() const override { return false; }
    VExpectedIdent* GetAsExpectedIdent() override { return nullptr; }
    VOwnIdent* GetAsOwnIdent() override { return nullptr; }
    IIdentIf& CloneIdentIf(VOdxElement&) override { return *this; }
};

// Answers identifications by flash and notes every question; knows nothing else.
class TestResolver : public VAbstractSnrefResolver {
public:
    std::map<VFlash*, IIdentIf*> answers;
    std::vector<std::pair<std::string, VFlash*>> calls;

    IIdentIf* ResolveIdentIf(const char* shortName, VFlash& flash) override
    {
        calls.emplace_back(shortName, &flash);
        auto found = answers.find(&flash);
        return found != answers.end() ? found->second : nullptr;
    }

    IInParamIf* ResolveInParamIf(const char*, VDiagComm&) override { return nullptr; }
    IOutParamIf* ResolveOutParamIf(const char*, VDiagComm&, VDiagLayer&, VSearchRange) override { return nullptr; }
    VSession* ResolveSession(const char*, VFlash&) override { return nullptr; }
    VProtocol* ResolveProtocol(const char*, VOdx&) override { return nullptr; }
    VDiagVariable* ResolveDiagVariable(const char*, VDiagLayer&) override { return nullptr; }
    VDiagComm* ResolveDiagComm(const char*, VConfigData&) override { return nullptr; }
    VDiagComm* ResolveDiagComm(const char*, VDiagLayer&) override { return nullptr; }
    VDopBase* ResolveDopBase(const char*, VDiagLayer&) override { return nullptr; }
    VDataObjectProp* ResolveDataObjectProp(const char*, VDiagLayer&) override { return nullptr; }
    VState* ResolveState(const char*, VStateChart&) override { return nullptr; }
    VStructure* ResolveStructure(const char*, VDiagLayer&) override { return nullptr; }
    VProtStack* ResolveProtStack(const char*, VProtocol&) override { return nullptr; }
    VDataRecord* ResolveDataRecord(const char*, VConfigRecord&) override { return nullptr; }
    VDtc* ResolveDtc(const char*, VDiagLayer&) override { return nullptr; }
    VEcuVariant* ResolveEcuVariant(const char*, VBaseVariant&) override { return nullptr; }
    VBaseVariant* ResolveBaseVariant(const char*, VOdx&) override { return nullptr; }
    VParam* ResolveParam(const char*, VDiagComm&, VDiagLayer&, VSearchRange) override { return nullptr; }
    VBasicStructure* ResolveBasicStructure(const char*, VDiagLayer&) override { return nullptr; }
    VEnvDataDesc* ResolveEnvDataDesc(const char*, VDiagLayer&) override { return nullptr; }
    VTable* ResolveTable(const char*, VDiagLayer&) override { return nullptr; }
    VTableRow* ResolveTableRow(const char*, VTable&) override { return nullptr; }
    VCodedConst* ResolveCodedConst(const char*, VRequest&) override { return nullptr; }
    VValue* ResolveValue(const char*, VRequest&) override { return nullptr; }
    VPhysConst* ResolvePhysConst(const char*, VRequest&) override { return nullptr; }
    VTableKey* ResolveTableKey(const char*, VResponse&) override { return nullptr; }
    VTableKey* ResolveTableKey(const char*, VRequest&) override { return nullptr; }
};

// One fresh document per test, ended through the factory.
class ReferencesTest : public ::testing::Test {
protected:
    void TearDown() override { mFactory.DestroyOdx(mOdx); }

    template <class Category>
    Category& Add(Category& category, VOdxTagEnum tag, const char* shortName)
    {
        category.SetShortName(shortName);
        EXPECT_TRUE(mOdx.HandleTag(tag, category));
        return category;
    }
    VFlash& Flash(const char* name) { return Add(mFactory.MakeFlash(mOdx, TAG_FLASH), TAG_FLASH, name); }
    VComparamSpec& Comparams(const char* name)
    {
        return Add(mFactory.MakeComparamSpec(mOdx, TAG_COMPARAM_SPEC), TAG_COMPARAM_SPEC, name);
    }

    // A referencable inside the category; a loose one is the test's to destroy.
    VCompanyData& Company(VOdxCategory& category, const char* id, bool loose = false)
    {
        VCompanyData& company = mFactory.MakeCompanyData(category, TAG_COMPANY_DATA);
        if (!loose) {
            category.CompanyDataCollection().Append(company);
        }
        company.SetId(id);
        return company;
    }

    // An id link below parent, kept by the factory's list of unhandled elements.
    VOdxlink& Link(VOdxElement& parent, const char* idRef, const char* docref = nullptr,
                   VDoctype doctype = eDoctypeNone)
    {
        VOdxlink& link = Park(mFactory.MakeOdxlink(parent, TAG_ODXLINK));
        link.SetIdRef(idRef);
        if (docref != nullptr) {
            link.SetDocref(docref);
        }
        if (doctype != eDoctypeNone) {
            link.SetDoctype(doctype);
        }
        return link;
    }

    template <class T>
    T& Park(T& element)
    {
        mFactory.UnhandledElementCollection().Append(element);
        return element;
    }
    // Hands a parked element back to the test, which destroys it.
    template <class T>
    T& Unpark(T& element)
    {
        mFactory.UnhandledElementCollection().Remove(element);
        return element;
    }

    VIdRefMap& Map() { return mOdx.GetIdRefMap(); }
    VOdxLinkSet& Links() { return mOdx.GetOdxLinkSet(); }

    VOdxFactory& mFactory = VOdxFactory::Instance();
    VOdx& mOdx = mFactory.MakeOdx();
};

// The map's referencables in map order.
inline std::vector<VReferencable*> AllOf(VIdRefMap& map)
{
    std::unique_ptr<VReferenceableSet> all(map.GetAllReferencables());
    std::vector<VReferencable*> items;
    for (auto it = all->Begin(); it != all->End(); ++it) {
        items.push_back(&*it);
    }
    return items;
}

inline void ExpectDocref(VOdxlink& link, const char* docref, VDoctype doctype)
{
    EXPECT_EQ(*docref != '\0', link.HasDocref());
    EXPECT_STREQ(docref, link.GetDocref());
    EXPECT_EQ(doctype != eDoctypeNone, link.HasDoctype());
    EXPECT_EQ(doctype, link.GetDoctype());
}

inline void ExpectLocal(VOdxlink& link)
{
    ExpectDocref(link, "", eDoctypeNone);
}

} // namespace ReferencesTests
