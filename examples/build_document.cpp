// Builds a small document through the factory, prints the path of every element in both path
// forms, and ends the document.

#include <cstdio>

#include "TesselODX220Model.h"

using namespace NODX220;

namespace {

void PrintPath(const char* what, const VOdxElement& element)
{
    std::printf("%s\n  by short name: %s\n  by position:   %s\n", what,
                element.GetXPATH(eXPathShortName).GetBuffer(),
                element.GetXPATH(eXPathPosition).GetBuffer());
}

} // namespace

int main()
{
    VOdxFactory& factory = VOdxFactory::Instance();
    VOdx& root = factory.MakeOdx();

    VDiagLayerContainer& container = factory.MakeDiagLayerContainer(root, TAG_DIAG_LAYER_CONTAINER);
    container.HandleTChar(TAG_SHORT_NAME, "DLC_Example");
    container.SetId("DLC.Example");
    root.HandleTag(TAG_DIAG_LAYER_CONTAINER, container);

    VText& longName = factory.MakeText(container, TAG_LONG_NAME);
    longName.HandleTChar(TAG_BASE_MEMBER, "An example container");
    container.HandleTag(TAG_LONG_NAME, longName);

    VAdminData& adminData = factory.MakeAdminData(container, TAG_ADMIN_DATA);
    container.HandleTag(TAG_ADMIN_DATA, adminData);

    for (const char* name : {"ACME", "Example Corp"}) {
        VCompanyData& company = factory.MakeCompanyData(container, TAG_COMPANY_DATA);
        company.HandleTChar(TAG_SHORT_NAME, name);
        container.CompanyDataCollection().HandleTag(TAG_COMPANY_DATA, company);
    }
    for (int i = 0; i < 2; ++i) {
        container.SdgCollection().HandleTag(TAG_SDG, factory.MakeSdg(container, TAG_SDG));
    }

    VFlash& flash = factory.MakeFlash(root, TAG_FLASH);
    flash.HandleTChar(TAG_SHORT_NAME, "FL_Example");
    root.HandleTag(TAG_FLASH, flash);

    PrintPath("document", root);
    PrintPath("container", container);
    PrintPath("long name", container.GetLongName());
    PrintPath("administrative data", container.GetAdminData());
    for (VCompanyData& company : container.CompanyDataCollection()) {
        PrintPath("company", company);
    }
    for (VSdg& sdg : container.SdgCollection()) {
        PrintPath("special data group", sdg);
    }
    PrintPath("flash", flash);
    std::printf("texts in the document: %u\n", root.TextIdElements().Count());

    factory.DestroyOdx(root);
    return 0;
}
