#pragma once

#include "framework/TesselODX220ModelExport.h"
#include "framework/VOdxElement.h"
#include "references/ILink.h"
#include "references/VDoctype.h"

namespace NODX220 {

class VReferencable;

// A reference by id (ID-REF, DOCREF, DOCTYPE, REVISION). It is entered in its document's link
// set when made, resolved only by Resolve (normally through VOdxLinkSet::ResolveReferences),
// and kept up to date by its target: a new id rewrites it, the target's end clears it.
class TESSEL_ODX_API VOdxlink : public VOdxElement, public ILink {
public:
    VOdxlink(VOdxElement& parent, VOdxTagEnum tag);
    explicit VOdxlink(VOdxElement& parent);
    // Copies the texts; a resolved source makes a copy resolved to the same target.
    VOdxlink(VOdxlink& source, VOdxElement& parent);
    ~VOdxlink() override;

    virtual VOdxlink& Clone(VOdxElement& parent);
    ILink& CloneLink(VOdxElement& parent) override;

    void SetIdRef(const char* idRef) { mIdRef = idRef; }
    const char* GetIdRef() const { return mIdRef.GetBuffer(); }
    void SetDocref(const char* docref);
    const char* GetDocref() const { return mDocref.GetBuffer(); }
    bool HasDocref() const { return mHasDocref; }
    void SetDoctype(VDoctype doctype);
    VDoctype GetDoctype() const { return mDoctype; }
    bool HasDoctype() const { return mHasDoctype; }
    void SetRevision(const char* revision);
    const char* GetRevision() const { return mRevision.GetBuffer(); }
    bool HasRevision() const { return mHasRevision; }

    // Attaches to the target and rewrites the texts as seen from here.
    virtual void SetReferencable(VReferencable& referencable);
    // The target as it stands; invalid without one, so ask HasReferencable first.
    virtual VReferencable& GetReferencable();
    virtual bool HasReferencable() const;
    virtual void ReferencableHasChanged();
    virtual void ReferencableDestroyed();
    // Looks the reference up in the document's id map; false leaves everything as it was.
    virtual bool Resolve();

    void UpdatePropertiesFromReferencable(VReferencable& referencable);
    // Clears id reference, docref and doctype; revision and target stay.
    void Reset();

    bool IsOdxlink() const override;
    bool IsSnref() const override;
    bool IsSnpathref() const override;
    VOdxlink* GetAsOdxlink() override;
    VSnref* GetAsSnref() override;
    VSnpathref* GetAsSnpathref() override;

    bool HandleTag(VOdxTagEnum tag, VOdxElement& child) override;

private:
    friend class VOdxFactory;

    void _EnterLinkSet();
    // Before its document ends: a target in another document forgets this link.
    void _ReleaseTargetOutside(const VOdx& root);

    VReferencable* mpReferencable = nullptr;
    VDoctype mDoctype = eDoctypeNone;
    bool mHasDoctype = false;
    bool mHasRevision = false;
    bool mHasDocref = false;
    VYAString mRevision;
    VYAString mIdRef;
    VYAString mDocref;
};

// Finds the document or layer that encloses an element, by its logical parents.
class TESSEL_ODX_API VOdxLinkUtil {
public:
    virtual ~VOdxLinkUtil();
    static VOdxElement* GetCategory(VOdxElement& element);
    static VOdxElement* GetLayer(VOdxElement& element);
};

} // namespace NODX220
