// tessel-odx: loads ODX documents and PDX archives and tells what they hold.

#include <cstdio>
#include <algorithm>
#include <cerrno>
#include <iterator>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <typeinfo>
#include <vector>

#include <filesystem>

#include <cxxabi.h>

#include "TesselODX220Model.h"
#include "TesselODX220Xml/VOdxCompare.h"
#include "TesselODX220Xml/VOdxDocuments.h"
#include "TesselODX220Xml/VOdxReader.h"
#include "TesselODX220Xml/VOdxWriter.h"

using namespace NODX220;
using namespace NODX220Xml;

namespace {

const char* const kUsage =
    "usage: tessel-odx COMMAND FILE... [OPTIONS]\n"
    "\n"
    "Loads ODX documents (.odx, .odx-d, .odx-c, .odx-cs, .odx-v, .odx-f, .odx-m, .odx-fd,\n"
    ".odx-e) and PDX archives into one model, and reports on it.\n"
    "\n"
    "commands:\n"
    "  info FILE... [--json]        documents and layers, element counts by class, links\n"
    "                               resolved and unresolved, unhandled content\n"
    "  paths FILE... [--positions]  the path of every element (by short name, or by position)\n"
    "  find FILE... --id ID         the elements registered under an id, with their paths\n"
    "  write FILE... -o OUT         writes the model out: OUT is a directory (one document per\n"
    "                               top-level document), an .odx-* file (a single one) or a .pdx\n"
    "  roundtrip FILE...            reads, writes, reads the writing and writes again; tells\n"
    "                               where the two writings differ, and how the first differs\n"
    "                               from the input in the canonical form\n"
    "\n"
    "options:\n"
    "  --lenient                    keep the files that loaded when others fail\n"
    "  --help                       this text\n"
    "\n"
    "Findings go to standard error as file:line:column: message. Exit status: 0 when everything\n"
    "loaded and resolved, 1 when files are malformed or loaded with problems, 2 for bad usage or\n"
    "a file that cannot be opened.\n";

struct Arguments {
    std::string command;
    std::vector<std::string> files;
    bool json = false;
    bool positions = false;
    bool lenient = false;
    std::string id;
    std::string output;
};

int Usage(const char* problem)
{
    std::fprintf(stderr, "tessel-odx: %s\n\n%s", problem, kUsage);
    return 2;
}

std::string ClassName(const VOdxElement& element)
{
    int status = 0;
    const char* mangled = typeid(element).name();
    std::unique_ptr<char, void (*)(void*)> demangled(abi::__cxa_demangle(mangled, nullptr, nullptr, &status),
                                                     std::free);
    std::string name = status == 0 && demangled ? demangled.get() : mangled;
    const std::string prefix = "NODX220::";
    return name.compare(0, prefix.size(), prefix) == 0 ? name.substr(prefix.size()) : name;
}

std::string JsonText(const std::string& text)
{
    std::string out = "\"";
    for (unsigned char c : text) {
        if (c == '"' || c == '\\') {
            out += '\\';
            out += static_cast<char>(c);
        } else if (c < 0x20) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04x", c);
            out += escape;
        } else {
            out += static_cast<char>(c);
        }
    }
    return out + "\"";
}

// The top-level documents of the root, each with its tag and short name.
std::vector<VOdxCategory*> Categories(VOdx& root)
{
    std::vector<VOdxCategory*> all;
    VOdxWalk::Children(root, [&all](VOdxElement& child) {
        if (auto* category = dynamic_cast<VOdxCategory*>(&child)) {
            all.push_back(category);
        }
    });
    return all;
}

bool IsLayer(const VOdxElement& element)
{
    switch (element.GetOdxTag()) {
    case TAG_BASE_VARIANT:
    case TAG_ECU_SHARED_DATA:
    case TAG_ECU_VARIANT:
    case TAG_FUNCTIONAL_GROUP:
    case TAG_PROTOCOL:
        return true;
    default:
        return false;
    }
}

int Info(VOdx& root, const VLoadResult& result, bool json)
{
    std::map<std::string, size_t> byClass;
    size_t elements = 0;
    size_t layers = 0;
    VOdxWalk::Tree(root, [&](VOdxElement& element) {
        ++elements;
        ++byClass[ClassName(element)];
        if (IsLayer(element)) {
            ++layers;
        }
    });
    const std::vector<VOdxCategory*> categories = Categories(root);
    const size_t parked = VOdxFactory::Instance().UnhandledElementCollection().Count();
    const size_t links = result.GetLinkCount();
    const size_t unresolved = result.GetUnresolvedCount();
    if (json) {
        std::printf("{\"elements\": %zu, \"unhandled\": %zu, \"links\": %zu, \"unresolved\": %zu, "
                    "\"categories\": %zu, \"layers\": %zu, \"load_ms\": %.3f, \"parked\": %zu, \"classes\": {",
                    elements, result.GetUnhandledCount(), links, unresolved, categories.size(), layers,
                    result.GetLoadMilliseconds(), parked);
        const char* separator = "";
        for (const auto& entry : byClass) {
            std::printf("%s%s: %zu", separator, JsonText(entry.first).c_str(), entry.second);
            separator = ", ";
        }
        std::printf("}, \"documents\": [");
        separator = "";
        for (VOdxCategory* category : categories) {
            std::printf("%s{\"tag\": %s, \"short_name\": %s, \"file\": %s}", separator,
                        JsonText(category->GetXmlTag().GetBuffer()).c_str(),
                        JsonText(category->GetShortName()).c_str(), JsonText(category->GetFileName()).c_str());
            separator = ", ";
        }
        std::printf("]}\n");
        return 0;
    }
    std::printf("documents: %zu\n", categories.size());
    for (VOdxCategory* category : categories) {
        std::printf("  %-24s %-32s %s\n", category->GetXmlTag().GetBuffer(), category->GetShortName(),
                    category->GetFileName());
    }
    std::printf("layers: %zu\nelements: %zu\n", layers, elements);
    for (const auto& entry : byClass) {
        std::printf("  %-32s %zu\n", entry.first.c_str(), entry.second);
    }
    std::printf("links: %zu, resolved %zu, unresolved %zu\n", links, links - unresolved, unresolved);
    std::printf("unhandled: %zu (parked elements: %zu)\n", result.GetUnhandledCount(), parked);
    std::printf("load: %.1f ms\n", result.GetLoadMilliseconds());
    return 0;
}

int Paths(VOdx& root, bool positions)
{
    const VXPathType type = positions ? eXPathPosition : eXPathShortName;
    VOdxWalk::Tree(root, [type](VOdxElement& element) {
        std::printf("%s\n", element.GetXPATH(type).GetBuffer());
    });
    return 0;
}

bool EndsWith(const std::string& text, const std::string& suffix)
{
    return text.size() >= suffix.size() && text.compare(text.size() - suffix.size(), suffix.size(), suffix) == 0;
}

int Write(VOdx& root, const VLoadResult& result, const std::string& output)
{
    VOdxWriter writer;
    std::string error;
    bool ok = false;
    if (EndsWith(output, ".pdx")) {
        ok = writer.WritePdx(root, output, result.HasCatalog() ? &result.GetCatalog() : nullptr,
                             &result.GetArchiveEntries(), error);
    } else if (output.find(".odx") != std::string::npos) {
        std::vector<VOdxCategory*> categories = Categories(root);
        if (categories.size() != 1) {
            std::fprintf(stderr, "tessel-odx: %s takes one document, the files hold %zu\n", output.c_str(),
                         categories.size());
            return 2;
        }
        ok = writer.WriteCategoryFile(*categories.front(), output, error);
    } else {
        std::error_code made;
        std::filesystem::create_directories(output, made);
        if (made) {
            std::fprintf(stderr, "tessel-odx: cannot make the directory %s: %s\n", output.c_str(),
                         made.message().c_str());
            return 2;
        }
        ok = writer.WriteDirectory(root, output, error);
    }
    if (!ok) {
        std::fprintf(stderr, "tessel-odx: %s\n", error.c_str());
        return 2;
    }
    return 0;
}

int Roundtrip(VOdx& root, const std::vector<std::string>& inputs)
{
    VOdxWriter writer;
    const std::vector<VWrittenDocument> first = writer.WriteDocuments(root);
    std::vector<VOdxReader::VBuffer> buffers;
    for (const VWrittenDocument& document : first) {
        buffers.push_back({document.mName, document.mText.data(), document.mText.size()});
    }
    VLoadResult again = VOdxReader().ReadBuffers(buffers);
    int status = 0;
    if (again.GetDocument() == nullptr) {
        std::fprintf(stderr, "tessel-odx: the written documents do not read back\n");
        for (const VDiagnostic& diagnostic : again.GetDiagnostics()) {
            std::fprintf(stderr, "%s\n", diagnostic.ToString().c_str());
        }
        return 1;
    }
    const std::vector<VWrittenDocument> second = writer.WriteDocuments(*again.GetDocument());
    if (second.size() != first.size()) {
        std::printf("the second writing has %zu documents, the first %zu\n", second.size(), first.size());
        status = 1;
    }
    for (size_t i = 0; i < first.size() && i < second.size(); ++i) {
        const std::string where = VOdxCompare::FirstDifference(first[i].mText, second[i].mText);
        if (!where.empty() || first[i].mName != second[i].mName) {
            std::printf("%s: the two writings differ at %s\n", first[i].mName.c_str(), where.c_str());
            status = 1;
        }
    }
    if (status == 0) {
        std::printf("%zu documents: writing, reading and writing again gives the same bytes\n", first.size());
    }
    const std::vector<std::string> differences = VOdxCompare::WithInputs(inputs, first, 200);
    if (differences.empty()) {
        std::printf("the first writing equals the input in the canonical form\n");
    } else {
        std::printf("the first writing differs from the input in the canonical form:\n");
        for (const std::string& difference : differences) {
            std::printf("  %s\n", difference.c_str());
        }
        status = 1;
    }
    return status;
}

int Find(VOdx& root, const std::string& id)
{
    std::unique_ptr<VReferenceableSet> all(root.GetIdRefMap().GetAllReferencables());
    size_t found = 0;
    for (auto it = all->Begin(); it != all->End(); ++it) {
        VReferencable& referencable = *it;
        if (id == referencable.GetId()) {
            VOdxElement& element = referencable.GetOdxElement();
            std::printf("%s  %s\n", ClassName(element).c_str(), element.GetXPATH(eXPathShortName).GetBuffer());
            ++found;
        }
    }
    if (found == 0) {
        std::fprintf(stderr, "tessel-odx: no element has the id '%s'\n", id.c_str());
    }
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    Arguments arguments;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (word == "--help" || word == "-h") {
            std::printf("%s", kUsage);
            return 0;
        }
        if (word == "--json") {
            arguments.json = true;
        } else if (word == "--positions") {
            arguments.positions = true;
        } else if (word == "--lenient") {
            arguments.lenient = true;
        } else if (word == "-o" || word == "--output") {
            if (i + 1 >= argc) {
                return Usage("-o needs a value");
            }
            arguments.output = argv[++i];
        } else if (word == "--id") {
            if (i + 1 >= argc) {
                return Usage("--id needs a value");
            }
            arguments.id = argv[++i];
        } else if (word.compare(0, 2, "--") == 0) {
            return Usage(("unknown option " + word).c_str());
        } else if (arguments.command.empty()) {
            arguments.command = word;
        } else {
            arguments.files.push_back(word);
        }
    }
    if (arguments.command.empty()) {
        return Usage("no command");
    }
    static const char* const kCommands[] = {"info", "paths", "find", "write", "roundtrip"};
    if (std::none_of(std::begin(kCommands), std::end(kCommands),
                     [&arguments](const char* command) { return arguments.command == command; })) {
        return Usage(("unknown command " + arguments.command).c_str());
    }
    if (arguments.files.empty()) {
        return Usage("no file");
    }
    if (arguments.command == "find" && arguments.id.empty()) {
        return Usage("find needs --id ID");
    }
    if (arguments.command == "write" && arguments.output.empty()) {
        return Usage("write needs -o OUT");
    }
    for (const std::string& file : arguments.files) {
        if (std::FILE* probe = std::fopen(file.c_str(), "rb")) {
            std::fclose(probe);
        } else {
            std::fprintf(stderr, "%s:0:0: error: cannot open the file: %s\n", file.c_str(), std::strerror(errno));
            return 2;
        }
    }

    VReadOptions options;
    options.mLenient = arguments.lenient;
    VOdxReader reader(options);
    VLoadResult result = reader.ReadFiles(arguments.files);
    for (const VDiagnostic& diagnostic : result.GetDiagnostics()) {
        std::fprintf(stderr, "%s\n", diagnostic.ToString().c_str());
    }
    VOdx* root = result.GetDocument();
    if (root == nullptr) {
        return 1;
    }
    int status = 0;
    if (arguments.command == "info") {
        status = Info(*root, result, arguments.json);
    } else if (arguments.command == "paths") {
        status = Paths(*root, arguments.positions);
    } else if (arguments.command == "find") {
        status = Find(*root, arguments.id);
    } else if (arguments.command == "write") {
        status = Write(*root, result, arguments.output);
    } else {
        status = Roundtrip(*root, arguments.files);
    }
    const bool problems = result.CountDiagnostics(eSeverityError) > 0 || result.GetUnhandledCount() > 0 ||
                          result.GetUnresolvedCount() > 0;
    return status != 0 ? status : (problems ? 1 : 0);
}
