#pragma once

// What the generated conformance tests share: a document with a host element to make
// elements under, and a few checks.

#include <functional>
#include <string>
#include <typeinfo>
#include <vector>

#include <gtest/gtest.h>

#include "TesselODX220Model.h"

namespace NODX220 {

// An element of a class no record names: every typed place refuses it.
class ForeignElement : public VOdxElement {
public:
    explicit ForeignElement(VOdxElement& parent) : VOdxElement(parent)
    {
        SetRootElement(parent.GetRootElement());
    }
    bool HandleTag(VOdxTagEnum, VOdxElement&) override { return false; }
};

// A document whose host is a flash document attached to the root. Elements handed to Adopt
// are parked in the unhandled collection and die with the document.
struct Document {
    VOdxFactory& factory = VOdxFactory::Instance();
    VOdx& root = factory.MakeOdx();
    VFlash& host = MakeHost();

    ~Document() { factory.DestroyOdx(root); }

    void Adopt(VOdxElement& element) { factory.UnhandledElementCollection().Append(element); }

private:
    VFlash& MakeHost()
    {
        VFlash& flash = factory.MakeFlash(root, TAG_FLASH);
        root.HandleTag(TAG_FLASH, flash);
        return flash;
    }
};

inline void ExpectAssertion(const std::function<void()>& call, const char* condition)
{
    try {
        call();
        ADD_FAILURE() << "expected the assertion " << condition;
    } catch (const VOdxException& exception) {
        EXPECT_STREQ(exception.GetMessage().GetBuffer(), condition);
        EXPECT_EQ(exception.GetCode(), VOdxException::OE_ModelError);
    }
}

template <class T>
VOdxElement& AsElement(T& item)
{
    return dynamic_cast<VOdxElement&>(item);
}

template <class T>
bool PhysicalParentIs(T& item, VOdxElement& parent)
{
    return &AsElement(item).GetPhysicalParent() == &parent;
}

inline bool EndsWith(const VYAString& text, const std::string& suffix)
{
    const std::string whole(text.GetBuffer());
    return whole.size() >= suffix.size() &&
           whole.compare(whole.size() - suffix.size(), suffix.size(), suffix) == 0;
}

} // namespace NODX220
