#include "TesselODX220Xml/VOdxCompare.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>

#include "PdxArchive.h"
#include "Tables.h"
#include "TableSupport.h"
#include "TesselODX220Model.h"
#include "TesselODX220Xml/VOdxDocuments.h"
#include "XmlTokenizer.h"

namespace NODX220Xml {

using namespace NODX220;

namespace {

// An element in the canonical form: its attributes sorted, its own text trimmed.
struct Node {
    std::string name;
    std::vector<std::pair<std::string, std::string>> attributes;
    std::string text;
    std::vector<Node> children;
};

// Brings values to the form the model gives them.
class Normaliser {
public:
    Normaliser() : mRoot(VOdxFactory::Instance().MakeOdx()), mDate(VOdxFactory::Instance().MakeDateTime(mRoot, TAG_DATE))
    {
        VOdxFactory::Instance().UnhandledElementCollection().Append(mDate);
    }
    ~Normaliser() { VOdxDocuments::Destroy(mRoot); }
    Normaliser(const Normaliser&) = delete;
    Normaliser& operator=(const Normaliser&) = delete;

    std::string Value(const std::string& raw)
    {
        const size_t first = raw.find_first_not_of(" \t\r\n");
        if (first == std::string::npos) {
            return "";
        }
        const std::string text = raw.substr(first, raw.find_last_not_of(" \t\r\n") - first + 1);
        unsigned short fields[6];
        if (std::sscanf(text.c_str(), "%4hu-%2hu-%2huT%2hu:%2hu:%2hu", &fields[0], &fields[1], &fields[2],
                        &fields[3], &fields[4], &fields[5]) == 6) {
            mDate.ParseUtcString(text.c_str(), "T");
            return mDate.AsStringDateTimeUtc("T");
        }
        char* end = nullptr;
        const double number = std::strtod(text.c_str(), &end);
        if (end != text.c_str() && *end == '\0' && text.find_first_of("xX") == std::string::npos) {
            return Internal::FormatDouble(number);
        }
        return text;
    }

private:
    VOdx& mRoot;
    VDateTime& mDate;
};

class TreeBuilder : public Internal::XmlTokenHandler {
public:
    explicit TreeBuilder(Normaliser& normaliser) : mNormaliser(normaliser) { mStack.push_back(&mDocument); }

    void StartElement(const char* name, const Internal::XmlAttribute* attributes, size_t count) override
    {
        Node node;
        node.name = name;
        for (size_t i = 0; i < count; ++i) {
            const std::string attribute = attributes[i].name;
            if (attribute.compare(0, 5, "xmlns") == 0 || attribute == "DOCREF" || attribute == "DOCTYPE") {
                continue;
            }
            node.attributes.emplace_back(attribute, mNormaliser.Value(attributes[i].value));
        }
        std::sort(node.attributes.begin(), node.attributes.end());
        mStack.back()->children.push_back(std::move(node));
        mStack.push_back(&mStack.back()->children.back());
        mTexts.emplace_back();
    }

    void EndElement(const char*) override
    {
        Node& node = *mStack.back();
        node.text = mNormaliser.Value(mTexts.back());
        mTexts.pop_back();
        mStack.pop_back();
        // The model keeps no empty lists: an empty plural wrapper counts as absent.
        if (node.children.empty() && node.attributes.empty() && node.text.empty() &&
            Internal::IsWrapperName(node.name.c_str())) {
            mStack.back()->children.pop_back();
        }
    }

    void Text(const char* text, size_t length) override
    {
        if (!mTexts.empty()) {
            mTexts.back().append(text, length);
        }
    }
    void Comment(const char*) override {}
    void ProcessingInstruction(const char*, const char*) override {}

    Node& Document() { return mDocument; }

private:
    Normaliser& mNormaliser;
    Node mDocument;
    std::vector<Node*> mStack;
    std::vector<std::string> mTexts;
};

bool BuildTree(const std::string& text, Normaliser& normaliser, Node& tree, std::string& error)
{
    TreeBuilder builder(normaliser);
    Internal::XmlTokenizer tokenizer(builder, "document");
    if (!tokenizer.Feed(text.data(), text.size()) || !tokenizer.Finish()) {
        error = "line " + std::to_string(tokenizer.ErrorLine()) + ": " + tokenizer.Error();
        return false;
    }
    tree = std::move(builder.Document());
    return true;
}

class Differ {
public:
    Differ(std::vector<std::string>& out, size_t limit) : mOut(out), mLimit(limit) {}

    void Compare(const Node& expected, const Node& actual, const std::string& path)
    {
        if (Full()) {
            return;
        }
        if (expected.attributes != actual.attributes) {
            std::map<std::string, std::string> left(expected.attributes.begin(), expected.attributes.end());
            std::map<std::string, std::string> right(actual.attributes.begin(), actual.attributes.end());
            for (const auto& attribute : left) {
                auto found = right.find(attribute.first);
                if (found == right.end()) {
                    Say(path, "attribute " + attribute.first + " is missing");
                } else if (found->second != attribute.second) {
                    Say(path, "attribute " + attribute.first + " is '" + found->second + "', not '" +
                                  attribute.second + "'");
                }
            }
            // An attribute that only the written side has is the model's value of a member
            // without a presence flag (IS-EXECUTABLE="true" and the like): it is tolerated.
        }
        if (expected.text != actual.text) {
            Say(path, "text is '" + actual.text + "', not '" + expected.text + "'");
        }
        std::map<std::string, unsigned> leftCount;
        std::map<std::string, unsigned> rightCount;
        size_t i = 0;
        size_t j = 0;
        const auto& left = expected.children;
        const auto& right = actual.children;
        while ((i < left.size() || j < right.size()) && !Full()) {
            if (i < left.size() && j < right.size() && left[i].name == right[j].name) {
                const unsigned n = ++leftCount[left[i].name];
                ++rightCount[right[j].name];
                Compare(left[i], right[j], path + "/" + left[i].name + "[" + std::to_string(n) + "]");
                ++i;
                ++j;
                continue;
            }
            const bool laterOnRight =
                i < left.size() && std::any_of(right.begin() + static_cast<long>(j), right.end(),
                                               [&](const Node& n) { return n.name == left[i].name; });
            if (j < right.size() && (i >= left.size() || laterOnRight)) {
                Say(path, "element " + right[j].name + " was not there");
                ++rightCount[right[j].name];
                ++j;
            } else {
                Say(path, "element " + left[i].name + " is missing");
                ++leftCount[left[i].name];
                ++i;
            }
        }
    }

private:
    bool Full() const { return mOut.size() >= mLimit; }
    void Say(const std::string& path, const std::string& what)
    {
        if (!Full()) {
            mOut.push_back(path + ": " + what);
        }
    }

    std::vector<std::string>& mOut;
    size_t mLimit;
};

bool EndsWithPdx(const std::string& path)
{
    return path.size() >= 4 && path.compare(path.size() - 4, 4, ".pdx") == 0;
}

std::string BaseName(const std::string& path)
{
    const size_t slash = path.find_last_of('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

} // namespace

std::vector<std::string> VOdxCompare::Canonical(const std::string& expected, const std::string& actual, size_t limit)
{
    std::vector<std::string> differences;
    Normaliser normaliser;
    Node left;
    Node right;
    std::string error;
    if (!BuildTree(expected, normaliser, left, error)) {
        differences.push_back("the first text is malformed: " + error);
        return differences;
    }
    if (!BuildTree(actual, normaliser, right, error)) {
        differences.push_back("the second text is malformed: " + error);
        return differences;
    }
    Differ(differences, limit).Compare(left, right, "");
    return differences;
}

std::vector<std::string> VOdxCompare::WithInputs(const std::vector<std::string>& inputs,
                                                 const std::vector<VWrittenDocument>& written, size_t limit)
{
    // The input documents by name, from files and from the documents of archives.
    std::map<std::string, std::string> originals;
    std::vector<std::string> differences;
    for (const std::string& input : inputs) {
        if (EndsWithPdx(input)) {
            std::string error;
            std::unique_ptr<Internal::PdxArchive> archive = Internal::PdxArchive::OpenFile(input, error);
            if (archive == nullptr) {
                differences.push_back(input + ": " + error);
                continue;
            }
            for (const std::string& entry : archive->EntryNames()) {
                std::string text;
                archive->Read(entry, [&text](const char* data, size_t size) {
                    text.append(data, size);
                    return true;
                }, error);
                originals[BaseName(entry)] = std::move(text);
            }
            continue;
        }
        std::FILE* file = std::fopen(input.c_str(), "rb");
        if (file == nullptr) {
            differences.push_back(input + ": cannot be read");
            continue;
        }
        std::string text;
        char buffer[1 << 16];
        size_t got = 0;
        while ((got = std::fread(buffer, 1, sizeof buffer, file)) > 0) {
            text.append(buffer, got);
        }
        std::fclose(file);
        originals[BaseName(input)] = std::move(text);
    }
    for (const VWrittenDocument& document : written) {
        auto found = originals.find(document.mName);
        if (found == originals.end()) {
            differences.push_back(document.mName + ": no input document of this name");
            continue;
        }
        for (const std::string& difference : Canonical(found->second, document.mText, limit)) {
            differences.push_back(document.mName + ": " + difference);
        }
    }
    return differences;
}

std::string VOdxCompare::FirstDifference(const std::string& first, const std::string& second)
{
    size_t at = 0;
    while (at < first.size() && at < second.size() && first[at] == second[at]) {
        ++at;
    }
    if (at == first.size() && at == second.size()) {
        return "";
    }
    // The open elements at that point, each with its position among its like.
    std::vector<std::pair<std::string, std::map<std::string, unsigned>>> open;
    std::vector<std::string> path;
    std::map<std::string, unsigned> top;
    unsigned line = 1;
    for (size_t i = 0; i < at; ++i) {
        if (first[i] == '\n') {
            ++line;
        }
        if (first[i] != '<' || i + 1 >= first.size() || first[i + 1] == '?' || first[i + 1] == '!') {
            continue;
        }
        const size_t end = first.find('>', i);
        if (end == std::string::npos || end >= at) {
            break;
        }
        if (first[i + 1] == '/') {
            if (!path.empty()) {
                path.pop_back();
                open.pop_back();
            }
            continue;
        }
        const size_t nameEnd = first.find_first_of(" />", i + 1);
        const std::string name = first.substr(i + 1, nameEnd - i - 1);
        std::map<std::string, unsigned>& siblings = open.empty() ? top : open.back().second;
        const unsigned n = ++siblings[name];
        if (first[end - 1] != '/') {
            path.push_back(name + "[" + std::to_string(n) + "]");
            open.emplace_back(name, std::map<std::string, unsigned>());
        }
    }
    std::string where;
    for (const std::string& step : path) {
        where += (where.empty() ? "" : "/") + step;
    }
    return "line " + std::to_string(line) + ", " + (where.empty() ? "before the root" : where);
}

} // namespace NODX220Xml
