// Uses the installed package the way an outside program does: only the umbrella header.
#include <TesselODX220Model.h>
#include <TesselODX220Xml/VOdxReader.h>

#include <cstdio>
#include <cstring>

// Defined in surface.cpp, which names the whole exported surface.
int UseEveryMakeOperation(NODX220::VOdxElement& parent);

int main()
{
    using namespace NODX220;
    VOdxFactory& factory = VOdxFactory::Instance();
    VOdx& root = factory.MakeOdx();
    VFlash& flash = factory.MakeFlash(root, TAG_FLASH);
    flash.HandleTChar(TAG_SHORT_NAME, "F1");
    root.HandleTag(TAG_FLASH, flash);
    const VYAString path = flash.GetXPATH(eXPathShortName);
    factory.DestroyOdx(root);
    if (std::strcmp(path.GetBuffer(), "ODX/FLASH") != 0) {
        std::fprintf(stderr, "unexpected path %s\n", path.GetBuffer());
        return 1;
    }
    const char document[] = "<ODX MODEL-VERSION=\"2.2.0\"><FLASH ID=\"F\"><SHORT-NAME>F2</SHORT-NAME></FLASH></ODX>";
    NODX220Xml::VLoadResult result = NODX220Xml::VOdxReader().ReadBuffer("f.odx-f", document, sizeof document - 1);
    if (result.GetDocument() == nullptr || result.GetDocument()->FlashCollection().Count() != 1) {
        std::fprintf(stderr, "the reader did not load the document\n");
        return 1;
    }
    {
        VOdx& document = factory.MakeOdx();
        VFlash& host = factory.MakeFlash(document, TAG_FLASH);
        document.HandleTag(TAG_FLASH, host);
        const int made = UseEveryMakeOperation(host);
        factory.DestroyOdx(document);
        if (made != 276 + 169) {
            std::fprintf(stderr, "made %d elements and collections\n", made);
            return 1;
        }
    }
    std::puts("consumer: ok");
    return 0;
}
