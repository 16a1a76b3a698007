#include "Unheld.h"

#include <cstring>

namespace NODX220Xml {
namespace Internal {

namespace {

struct Unheld {
    const char* parent;
    const char* name;
    const char* reason;
};

const Unheld kUnheld[] = {
    {"COMM-RELATION", "IN-PARAM-IF-REF", "the model names the parameter of a relation by short name or path only"},
    {"COMM-RELATION", "OUT-PARAM-IF-REF", "the model names the parameter of a relation by short name or path only"},
    {"DTC", "DESC", "a trouble code has a short name but no description in the model"},
    {"DTC", "LONG-NAME", "a trouble code has a short name but no long name in the model"},
    {"ECU-GROUP", "@ID", "an ECU group is no target of references in the model"},
    {"ENV-DATA-DESC", "ENV-DATAS", "the model holds the environment data of a description by reference only"},
    {"IN-PARAM-IF-REFS", "IN-PARAM-IF-SNPATHREF", "the model names these parameters by short name only"},
    {"OUT-PARAM-IF-REFS", "OUT-PARAM-IF-SNPATHREF", "the model names these parameters by short name only"},
    {"SELECTION-TABLE-REFS", "SELECTION-TABLE-REF", "the model names selection tables by short name only"},
    {"VEHICLE-CONNECTOR", "@ID", "a vehicle connector is no target of references in the model"},
};

} // namespace

const char* UnheldReason(const char* parent, const char* name)
{
    for (const Unheld& unheld : kUnheld) {
        if (std::strcmp(unheld.parent, parent) == 0 && std::strcmp(unheld.name, name) == 0) {
            return unheld.reason;
        }
    }
    return nullptr;
}

} // namespace Internal
} // namespace NODX220Xml
