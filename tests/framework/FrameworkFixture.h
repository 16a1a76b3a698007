#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "TesselODX220Model.h"
#include "framework/VListCollectionImpl.h"

namespace FrameworkTests {

using namespace NODX220;

// Names of test elements in the order of their destruction.
using Graveyard = std::vector<std::string>;

// A plain element that notes its destruction.
class Probe : public VOdxElement {
public:
    Probe(VOdxElement& parent, VOdxTagEnum tag, Graveyard* graveyard = nullptr, const char* name = "")
        : VOdxElement(parent), mpGraveyard(graveyard), mName(name)
    {
        SetOdxTag(tag);
        SetRootElement(parent.GetRootElement());
    }
    ~Probe() override
    {
        if (mpGraveyard != nullptr) {
            mpGraveyard->push_back(mName);
        }
    }
    bool HandleTag(VOdxTagEnum, VOdxElement&) override { return false; }

private:
    Graveyard* mpGraveyard;
    std::string mName;
};

// A qualified element, as the items of most collections are.
class QualifiedProbe : public VQualified {
public:
    QualifiedProbe(VOdxElement& parent, VOdxTagEnum tag, const char* shortName)
        : VQualified(parent)
    {
        SetOdxTag(tag);
        SetRootElement(parent.GetRootElement());
        SetShortName(shortName);
    }
};

// A list collection whose path form and step name are chosen by the test; it takes
// COMPARAM and COMPLEX-COMPARAM.
class ProbeCollection : public VListCollection<VOdxElement> {
public:
    explicit ProbeCollection(VOdxElement& parent, VXPathForm form = eXPathFormShortName,
                             const char* stepName = nullptr)
        : VListCollection<VOdxElement>(parent, parent.GetRootElement()), mForm(form),
          mpStepName(stepName)
    {
    }

    VYAString GetNameForXPATH(const VOdxElement& item) const override
    {
        return mpStepName != nullptr ? VYAString(mpStepName)
                                     : VListCollection<VOdxElement>::GetNameForXPATH(item);
    }

protected:
    bool _IsItemTag(VOdxTagEnum tag) const override
    {
        return tag == TAG_COMPARAM || tag == TAG_COMPLEX_COMPARAM;
    }
    const char* _GetCollectionName() const override { return "PROBES"; }
    VXPathForm _GetXPathForm() const override { return mForm; }

private:
    VXPathForm mForm;
    const char* mpStepName;
};

// One fresh document per test, ended through the factory.
class DocumentFixture : public ::testing::Test {
protected:
    void TearDown() override { mFactory.DestroyOdx(mOdx); }

    VFlash& AddFlash(const char* shortName)
    {
        VFlash& flash = mFactory.MakeFlash(mOdx, TAG_FLASH);
        flash.SetShortName(shortName);
        EXPECT_TRUE(mOdx.HandleTag(TAG_FLASH, flash));
        return flash;
    }

    VOdxFactory& mFactory = VOdxFactory::Instance();
    VOdx& mOdx = mFactory.MakeOdx();
    Graveyard mGraveyard;
};

inline std::string Str(const VYAString& text)
{
    return std::string(text.GetBuffer(), text.GetLength());
}

template <class F>
std::optional<VOdxException> CatchOdx(F&& action)
{
    try {
        action();
    } catch (const VOdxException& e) {
        return e;
    }
    return std::nullopt;
}

} // namespace FrameworkTests
