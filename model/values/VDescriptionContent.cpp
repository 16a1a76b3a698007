// VDescription's markup: the node tree it owns and its plain and tagged renderings.

#include <sstream>

#include "framework/internal/Failure.h"
#include "values/VDescription.h"
#include "values/VSimpleXmlElement.h"

namespace NODX220 {

namespace {

bool BreaksLine(const VYAString& name)
{
    return name == "p" || name == "li" || name == "br";
}

} // namespace

void VDescription::_AfterCopy(VDescription& source)
{
    // A copy of the tree loses its attributes.
    if (source.mpDescContent != nullptr) {
        mpDescContent = &source.mpDescContent->Clone();
    }
}

void VDescription::_BeforeDestroy()
{
    delete mpDescContent;
    delete mpContentCache;
    delete mpTaggedContentCache;
}

namespace {

// Keeps a rendering in its cache, which is made on first use.
const char* Keep(VYAString*& cache, const std::string& text)
{
    if (cache == nullptr) {
        cache = new VYAString();
    }
    *cache = VYAString(text.data(), text.size());
    return cache->GetBuffer();
}

} // namespace

const char* VDescription::GetContent()
{
    std::ostringstream stream;
    if (mpDescContent != nullptr) {
        for (unsigned i = 0; i < mpDescContent->GetChildCount(); ++i) {
            DescToString(mpDescContent->GetChildElementAt(i), &stream, false);
        }
    }
    return Keep(mpContentCache, stream.str());
}

const char* VDescription::GetTaggedContent()
{
    std::ostringstream stream;
    if (mpDescContent != nullptr) {
        for (unsigned i = 0; i < mpDescContent->GetChildCount(); ++i) {
            DescToString(mpDescContent->GetChildElementAt(i), &stream, true);
        }
    }
    return Keep(mpTaggedContentCache, stream.str());
}

void VDescription::SetContent(VSimpleXmlElement& root)
{
    delete mpDescContent;
    mpDescContent = &root;
}

VSimpleXmlElement& VDescription::GetContentAsDOM() const
{
    if (mpDescContent == nullptr) {
        Internal::FailAssertion(kLogGroupId, "mpDescContent!=NULL");
    }
    return *mpDescContent;
}

bool VDescription::HasDescContent() const
{
    return mpDescContent != nullptr;
}

bool VDescription::HandleSimpleXmlElement(VOdxTagEnum tag, VSimpleXmlElement& element)
{
    if (tag != TAG_FORMAT_TAG) {
        return false;
    }
    if (mpDescContent == nullptr) {
        mpDescContent = new VSimpleXmlElementRoot();
    }
    mpDescContent->AppendSimpleXmlElement(element);
    return true;
}

void VDescription::DescToString(VSimpleXmlElement& element, std::ostringstream* ipStream, bool tagged)
{
    if (ipStream == nullptr) {
        Internal::FailAssertion(kLogGroupId, "ipStream!=NULL");
    }
    std::ostringstream& stream = *ipStream;
    const VYAString& name = element.GetTagname();
    // A text node is never tagged, nor is anything below it.
    if (tagged && name.IsEmpty()) {
        tagged = false;
    }
    if (!tagged && BreaksLine(name) && stream.tellp() > 0) {
        stream << '\n' << std::flush;
    }
    if (tagged) {
        // Attributes follow the name without a blank; this layout is what readers of it expect.
        stream << '<' << name.GetBuffer();
        const VContainerYAString names = element.GetAttributeNames();
        for (unsigned i = 0; i < names.Size(); ++i) {
            stream << names.At(i).GetBuffer() << "=\"" << element.GetAttribute(names.At(i)).GetBuffer()
                   << '"';
        }
    }
    const unsigned count = element.GetChildCount();
    const VYAString& data = element.GetPCData();
    if (tagged && count == 1 && element.GetChildElementAt(0).GetTagname().IsEmpty()) {
        stream << '>' << element.GetChildElementAt(0).GetPCData().GetBuffer() << "</"
               << name.GetBuffer() << '>';
        return;
    }
    if (count == 0 && data.IsEmpty()) {
        if (tagged) {
            stream << "/>";
        }
        return;
    }
    if (count == 0) {
        if (tagged) {
            stream << '>';
        }
        stream << data.GetBuffer();
        if (tagged) {
            stream << "</" << name.GetBuffer() << '>';
        }
        return;
    }
    if (tagged) {
        stream << '>';
    }
    for (unsigned i = 0; i < count; ++i) {
        DescToString(element.GetChildElementAt(i), ipStream, tagged);
    }
    if (tagged) {
        stream << "</" << name.GetBuffer() << '>';
    }
}

} // namespace NODX220
