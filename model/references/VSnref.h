#pragma once

#include "framework/TesselODX220ModelExport.h"
#include "framework/VOdxElement.h"
#include "references/ILink.h"

namespace NODX220 {

// A reference by short name. It holds the text only: what the name means is decided outside
// the model, by the document's VAbstractSnrefResolver, when a typed link asks in a context.
class TESSEL_ODX_API VSnref : public VOdxElement, public ILink {
public:
    VSnref(VOdxElement& parent, VOdxTagEnum tag);
    VSnref(VSnref& source, VOdxElement& parent);
    ~VSnref() override;

    virtual VSnref& Clone(VOdxElement& parent);
    ILink& CloneLink(VOdxElement& parent) override;

    const char* GetShortName() const { return mShortName.GetBuffer(); }
    void SetShortName(const char* shortName) { mShortName = shortName; }

    bool IsOdxlink() const override;
    bool IsSnref() const override;
    bool IsSnpathref() const override;
    VOdxlink* GetAsOdxlink() override;
    VSnref* GetAsSnref() override;
    VSnpathref* GetAsSnpathref() override;

    bool HandleTag(VOdxTagEnum tag, VOdxElement& child) override;

private:
    VYAString mShortName;
};

// A reference by a path of short names; the model never resolves it.
class TESSEL_ODX_API VSnpathref : public VOdxElement, public ILink {
public:
    VSnpathref(VOdxElement& parent, VOdxTagEnum tag);
    VSnpathref(VSnpathref& source, VOdxElement& parent);
    ~VSnpathref() override;

    virtual VSnpathref& Clone(VOdxElement& parent);
    ILink& CloneLink(VOdxElement& parent) override;

    const char* GetShortNamePath() const { return mShortNamePath.GetBuffer(); }
    void SetShortNamePath(const char* path) { mShortNamePath = path; }

    bool IsOdxlink() const override;
    bool IsSnref() const override;
    bool IsSnpathref() const override;
    VOdxlink* GetAsOdxlink() override;
    VSnref* GetAsSnref() override;
    VSnpathref* GetAsSnpathref() override;

    bool HandleTag(VOdxTagEnum tag, VOdxElement& child) override;

private:
    VYAString mShortNamePath;
};

} // namespace NODX220
