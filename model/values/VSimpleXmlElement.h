#pragma once

#include <map>
#include <vector>

#include "TesselSharedUtil/VContainerYAString.h"
#include "TesselSharedUtil/VYAString.h"
#include "framework/TesselODX220ModelExport.h"

namespace NODX220 {

using NTesselSharedUtil::VContainerYAString;
using NTesselSharedUtil::VYAString;

// A node of the free markup inside descriptions: a tag name (empty for a pure text node),
// attributes, character data and owned children. Not an element: no parent, no pad lock.
class TESSEL_ODX_API VSimpleXmlElement {
public:
    explicit VSimpleXmlElement(const VYAString& tagname);
    VSimpleXmlElement& operator=(const VSimpleXmlElement&) = delete;
    virtual ~VSimpleXmlElement();

    const VYAString& GetTagname() const { return mTagname; }

    // True when the name was new, false when an existing value was replaced.
    bool SetAttribute(const VYAString& name, const VYAString& value, bool escape);
    bool SetAttribute(const VYAString& name, const int& value);
    bool SetAttribute(const VYAString& name, const long& value);
    // False does nothing (and answers true); true stores the name with an empty value.
    bool SetAttribute(const VYAString& name, const bool& value);
    // The empty text when there is no such attribute.
    VYAString GetAttribute(const VYAString& name) const;
    VContainerYAString GetAttributeNames() const;

    void SetPCData(const VYAString& text, bool escape);
    // Only the appended piece is escaped.
    void AppendPCData(const VYAString& text, bool escape);
    const VYAString& GetPCData() const { return mPCData; }

    VSimpleXmlElement& NewInnerTag(const VYAString& tagname);
    // Takes ownership of the child.
    void AppendSimpleXmlElement(VSimpleXmlElement& child);
    unsigned GetChildCount() const;
    VSimpleXmlElement& GetChildElementAt(unsigned iIndex) const;

    // A deep copy of names, character data and children, without any attributes.
    VSimpleXmlElement& Clone() const;
    // Destroys the children and drops the attributes; name and character data stay.
    void Clear();

private:
    using Children = std::vector<VSimpleXmlElement*>;

    VSimpleXmlElement(const VSimpleXmlElement& source);
    // & to &amp;, then < to &lt;, then > to &gt;.
    void EnsureXml(const VYAString& in, VYAString& out) const;

    Children* mInnerTags;
    std::map<VYAString, Children*>* mpNameIndex;
    std::map<VYAString, VYAString>* mpAttributes;
    VYAString mTagname;
    VYAString mPCData;
};

// The nameless root under which a description keeps its top-level nodes.
class TESSEL_ODX_API VSimpleXmlElementRoot : public VSimpleXmlElement {
public:
    VSimpleXmlElementRoot();
    ~VSimpleXmlElementRoot() override;
};

} // namespace NODX220
