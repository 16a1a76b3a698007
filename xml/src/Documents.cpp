#include "TesselODX220Xml/VOdxDocuments.h"
#include "TesselODX220Xml/VOdxTagNames.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "TableSupport.h"
#include "Tables.h"

namespace NODX220Xml {

using NODX220::VOdx;
using NODX220::VOdxElement;
using NODX220::VOdxFactory;

namespace Internal {

const ChildRule* FindChild(const ChildRule* rules, uint16_t count, const char* name)
{
    size_t first = 0;
    size_t last = count;
    while (first < last) {
        const size_t middle = first + (last - first) / 2;
        const int order = std::strcmp(rules[middle].name, name);
        if (order == 0) {
            return &rules[middle];
        }
        if (order < 0) {
            first = middle + 1;
        } else {
            last = middle;
        }
    }
    return nullptr;
}

const char* EnumText(const EnumLiterals& literals, int value)
{
    for (uint16_t i = 0; i < literals.count; ++i) {
        if (literals.values[i] == value) {
            return literals.literals[i];
        }
    }
    return "";
}

bool EnumValue(const EnumLiterals& literals, const char* text, int& value)
{
    for (uint16_t i = 0; i < literals.count; ++i) {
        if (std::strcmp(literals.literals[i], text) == 0) {
            value = literals.values[i];
            return true;
        }
    }
    return false;
}

bool StepTakes(const MemberStep& step, VOdxTagEnum tag)
{
    if (step.tags == nullptr) {
        return true;
    }
    for (uint16_t i = 0; i < step.tagCount; ++i) {
        if (step.tags[i] == tag) {
            return true;
        }
    }
    return false;
}

std::string StepName(const MemberStep& step, const VOdxElement& child)
{
    const VOdxTagEnum tag = child.GetOdxTag();
    for (uint16_t i = 0; i < step.nameCount; ++i) {
        if (step.names[i].tag == tag) {
            return step.names[i].name;
        }
    }
    if (const ClassTable* table = TableOf(child)) {
        if (table->elementName != nullptr) {
            return table->elementName;
        }
    }
    return child.GetXmlTag().GetBuffer();
}

std::string FormatDouble(double value)
{
    char buffer[64];
    for (int precision = 1; precision <= 17; ++precision) {
        std::snprintf(buffer, sizeof buffer, "%.*g", precision, value);
        if (std::strtod(buffer, nullptr) == value) {
            break;
        }
    }
    return buffer;
}

namespace {

template <class Collection>
bool RemoveFrom(Collection& collection, VOdxElement& category)
{
    for (auto it = collection.Begin(); it != collection.End(); ++it) {
        if (static_cast<VOdxElement*>(&*it) == &category) {
            collection.Remove(it);
            return true;
        }
    }
    return false;
}

} // namespace

void RemoveCategory(VOdx& root, VOdxElement& category)
{
    RemoveFrom(root.ComparamSpecCollection(), category) || RemoveFrom(root.ComparamSubsetCollection(), category) ||
        RemoveFrom(root.DiagLayerContainerCollection(), category) || RemoveFrom(root.EcuConfigCollection(), category) ||
        RemoveFrom(root.FlashCollection(), category) || RemoveFrom(root.FunctionDictionaryCollection(), category) ||
        RemoveFrom(root.MultipleEcuJobSpecCollection(), category) ||
        RemoveFrom(root.VehicleInfoSpecCollection(), category);
}

} // namespace Internal

void VOdxDocuments::Destroy(VOdx& document)
{
    // The factory's list of parked elements is one for all documents, and DestroyOdx clears
    // it: the other documents' elements step aside meanwhile.
    NODX220::VUnhandledElementCollection& parked = VOdxFactory::Instance().UnhandledElementCollection();
    std::vector<VOdxElement*> others;
    for (auto it = parked.Begin(); it != parked.End(); ++it) {
        if (&(*it).GetRootElement() != &document) {
            others.push_back(&*it);
        }
    }
    for (VOdxElement* element : others) {
        parked.Remove(*element);
    }
    VOdxFactory::Instance().DestroyOdx(document);
    for (VOdxElement* element : others) {
        parked.Append(*element);
    }
}

void VOdxWalk::Children(VOdxElement& element, const std::function<void(VOdxElement&)>& visit)
{
    const Internal::ClassTable* table = Internal::TableOf(element);
    if (table == nullptr) {
        return;
    }
    for (uint16_t i = 0; i < table->stepCount; ++i) {
        const Internal::MemberStep& step = table->steps[i];
        if (step.kind == Internal::StepKind::Element) {
            if (VOdxElement* child = step.child(element)) {
                visit(*child);
            }
        } else if (step.kind == Internal::StepKind::Wrapper || step.kind == Internal::StepKind::Items) {
            if (step.tags == nullptr) {
                step.items(element, visit);
            } else {
                step.items(element, [&step, &visit](VOdxElement& item) {
                    if (Internal::StepTakes(step, item.GetOdxTag())) {
                        visit(item);
                    }
                });
            }
        }
    }
}

void VOdxWalk::NamedChildren(VOdxElement& element, const std::function<void(VOdxElement&, const char*)>& visit)
{
    const Internal::ClassTable* table = Internal::TableOf(element);
    if (table == nullptr) {
        return;
    }
    const bool reference = table->content == Internal::Content::Reference;
    auto named = [&visit, reference](const Internal::MemberStep& step, VOdxElement& child) {
        const Internal::ClassTable* childTable = Internal::TableOf(child);
        if (reference || (childTable != nullptr && childTable->transparent)) {
            visit(child, nullptr);
        } else {
            visit(child, Internal::StepName(step, child).c_str());
        }
    };
    for (uint16_t i = 0; i < table->stepCount; ++i) {
        const Internal::MemberStep& step = table->steps[i];
        if (step.kind == Internal::StepKind::Element) {
            if (VOdxElement* child = step.child(element)) {
                named(step, *child);
            }
        } else if (step.kind == Internal::StepKind::Wrapper || step.kind == Internal::StepKind::Items) {
            step.items(element, [&step, &named](VOdxElement& item) {
                if (Internal::StepTakes(step, item.GetOdxTag())) {
                    named(step, item);
                }
            });
        }
    }
}

void VOdxWalk::Tree(VOdxElement& element, const std::function<void(VOdxElement&)>& visit)
{
    visit(element);
    Children(element, [&visit](VOdxElement& child) { Tree(child, visit); });
}

} // namespace NODX220Xml

namespace NODX220Xml {

NODX220::VOdxTagEnum VOdxTagNames::FromName(const char* name)
{
    return name != nullptr ? Internal::TagOfName(name) : NODX220::TAG_UNSET;
}

std::vector<std::string> VOdxTagNames::ReadElementNames()
{
    std::vector<std::string> names;
    for (const char* const* name = Internal::kReadElementNames; *name != nullptr; ++name) {
        names.emplace_back(*name);
    }
    return names;
}

std::vector<std::string> VOdxTagNames::ReadAttributeNames()
{
    std::vector<std::string> names;
    for (const char* const* name = Internal::kReadAttributeNames; *name != nullptr; ++name) {
        names.emplace_back(*name);
    }
    return names;
}

} // namespace NODX220Xml
