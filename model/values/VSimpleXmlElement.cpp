#include "values/VSimpleXmlElement.h"

#include <cstdio>
#include <string>

#include "framework/internal/Failure.h"

namespace NODX220 {

namespace {

void ReplaceAll(std::string& text, const std::string& from, const std::string& to)
{
    for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
}

} // namespace

VSimpleXmlElement::VSimpleXmlElement(const VYAString& tagname)
    : mInnerTags(new Children()),
      mpNameIndex(new std::map<VYAString, Children*>()),
      mpAttributes(new std::map<VYAString, VYAString>()),
      mTagname(tagname)
{
}

VSimpleXmlElement::VSimpleXmlElement(const VSimpleXmlElement& source)
    : mInnerTags(new Children()),
      mpNameIndex(new std::map<VYAString, Children*>()),
      mpAttributes(new std::map<VYAString, VYAString>()),
      mTagname(source.mTagname),
      mPCData(source.mPCData)
{
    // Attributes are not copied, at any depth.
    for (const VSimpleXmlElement* child : *source.mInnerTags) {
        AppendSimpleXmlElement(child->Clone());
    }
}

VSimpleXmlElement::~VSimpleXmlElement()
{
    Clear();
    delete mInnerTags;
    delete mpNameIndex;
    delete mpAttributes;
}

bool VSimpleXmlElement::SetAttribute(const VYAString& name, const VYAString& value, bool escape)
{
    VYAString stored(value);
    if (escape) {
        EnsureXml(value, stored);
    }
    auto found = mpAttributes->find(name);
    if (found != mpAttributes->end()) {
        found->second = stored;
        return false;
    }
    mpAttributes->emplace(name, stored);
    return true;
}

bool VSimpleXmlElement::SetAttribute(const VYAString& name, const int& value)
{
    const long wide = value;
    return SetAttribute(name, wide);
}

bool VSimpleXmlElement::SetAttribute(const VYAString& name, const long& value)
{
    char buffer[128];
    std::snprintf(buffer, sizeof buffer, "%ld", value);
    return SetAttribute(name, VYAString(buffer), false);
}

bool VSimpleXmlElement::SetAttribute(const VYAString& name, const bool& value)
{
    if (!value) {
        return true;
    }
    return SetAttribute(name, VYAString(), false);
}

VYAString VSimpleXmlElement::GetAttribute(const VYAString& name) const
{
    auto found = mpAttributes->find(name);
    return found != mpAttributes->end() ? found->second : VYAString();
}

VContainerYAString VSimpleXmlElement::GetAttributeNames() const
{
    VContainerYAString names;
    for (const auto& attribute : *mpAttributes) {
        names.Pushback(attribute.first);
    }
    return names;
}

void VSimpleXmlElement::SetPCData(const VYAString& text, bool escape)
{
    if (escape) {
        EnsureXml(text, mPCData);
    } else {
        mPCData = text;
    }
}

void VSimpleXmlElement::AppendPCData(const VYAString& text, bool escape)
{
    if (escape) {
        VYAString escaped;
        EnsureXml(text, escaped);
        mPCData.Append(escaped);
    } else {
        mPCData.Append(text);
    }
}

VSimpleXmlElement& VSimpleXmlElement::NewInnerTag(const VYAString& tagname)
{
    auto* child = new VSimpleXmlElement(tagname);
    AppendSimpleXmlElement(*child);
    return *child;
}

void VSimpleXmlElement::AppendSimpleXmlElement(VSimpleXmlElement& child)
{
    mInnerTags->push_back(&child);
    Children*& named = (*mpNameIndex)[child.mTagname];
    if (named == nullptr) {
        named = new Children();
    }
    named->push_back(&child);
}

unsigned VSimpleXmlElement::GetChildCount() const
{
    return static_cast<unsigned>(mInnerTags->size());
}

VSimpleXmlElement& VSimpleXmlElement::GetChildElementAt(unsigned iIndex) const
{
    if (iIndex >= mInnerTags->size()) {
        Internal::FailAssertion(kLogGroupId, "iIndex <mInnerTags->size()");
    }
    return *(*mInnerTags)[iIndex];
}

VSimpleXmlElement& VSimpleXmlElement::Clone() const
{
    return *new VSimpleXmlElement(*this);
}

void VSimpleXmlElement::Clear()
{
    Children children;
    children.swap(*mInnerTags);
    for (VSimpleXmlElement* child : children) {
        delete child;
    }
    for (auto& named : *mpNameIndex) {
        delete named.second;
    }
    mpNameIndex->clear();
    mpAttributes->clear();
}

void VSimpleXmlElement::EnsureXml(const VYAString& in, VYAString& out) const
{
    std::string text(in.GetBuffer(), in.GetLength());
    ReplaceAll(text, "&", "&amp;");
    ReplaceAll(text, "<", "&lt;");
    ReplaceAll(text, ">", "&gt;");
    out = VYAString(text.data(), text.size());
}

VSimpleXmlElementRoot::VSimpleXmlElementRoot() : VSimpleXmlElement(VYAString()) {}

VSimpleXmlElementRoot::~VSimpleXmlElementRoot() = default;

} // namespace NODX220
