#pragma once

// The description of every element class as the XML layer sees it: which attributes it has,
// which child elements it takes and how, what its text content is, and how its children are
// reached again. The tables are generated from the model descriptions (XmlTables.cpp); the
// reader, the writer and the tree walk interpret them.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "TesselODX220Model.h"

namespace NODX220Xml {
namespace Internal {

using NODX220::VOdxElement;
using NODX220::VOdxTagEnum;

// How a text becomes a value, and a value a text.
enum class ValueKind : uint8_t { Text, UInt, Int, Double, Byte, Bool, Enum };

// The XML literals of an enumeration, by number.
struct EnumLiterals {
    const char* name;
    const char* const* literals;
    const int* values;
    uint16_t count;
};

struct ClassTable;
struct CollectionTable;

// The XML name of a tag, where a document names an element otherwise than the model's tag.
struct TagName {
    VOdxTagEnum tag;
    const char* name;
};

// An attribute of an element: stores a text through the member's setter. The text was
// already converted and checked where a number is wanted.
struct AttributeRule {
    const char* name;
    ValueKind kind;
    const EnumLiterals* literals;
    void (*store)(VOdxElement& element, const char* text, const long long number);
    // For writing: whether the attribute is there, and its text.
    bool (*present)(VOdxElement& element);
    void (*load)(VOdxElement& element, std::string& text);
};

enum class ChildKind : uint8_t {
    // A child element made by `make`, read by its class table, handed over under `tag`.
    Element,
    // A reference: a typed link element made by `make`, and inside it an id link, a
    // short-name link or a short-name-path link, by the tag's ending.
    Reference,
    // An element whose text goes to the owner by the Handle call of `kind`.
    Text,
    // A plural wrapper whose items go to the owner's collection.
    Wrapper,
};

enum class LinkForm : uint8_t { Odxlink, Snref, Snpathref };

struct ChildRule {
    const char* name;
    VOdxTagEnum tag;
    ChildKind kind;
    // Text: how the text is delivered. An enumeration's literal goes by HandleUInt.
    ValueKind value;
    LinkForm link;
    // Text of kind Enum: the literals.
    const EnumLiterals* literals;
    // Element and Reference: the child's class and how it is made.
    const ClassTable* table;
    VOdxElement& (*make)(VOdxElement& parent, VOdxTagEnum tag);
    // Reference: hands the link object to the typed link element.
    void (*setLink)(VOdxElement& element, NODX220::ILink& link);
    // Wrapper: the collection, reached through the owner.
    const CollectionTable* collection;
    VOdxElement& (*collectionOf)(VOdxElement& owner);
    // Element and Reference: where the child goes when the owner does not take it itself: the
    // owner's collection, or a compound that the owner holds and that takes such children.
    VOdxElement& (*into)(VOdxElement& owner);
    // An owner's single child: whether it holds one already (a second one would replace it).
    bool (*present)(VOdxElement& owner);
};

// One member of an element in document order, for the walk and the writer.
enum class StepKind : uint8_t {
    // An element member: the child, or null when absent.
    Element,
    // A text member written as a child element `name`.
    Text,
    // A collection in a plural wrapper `name`; its items are elements.
    Wrapper,
    // A collection of texts in a plural wrapper `name`, each in an element `itemName`.
    TextWrapper,
    // A collection whose items stand directly in the owner.
    Items,
    // Texts (numbers of a collection) written as elements `itemName` directly in the owner.
    TextItems,
};

struct MemberStep {
    StepKind kind;
    const char* name;
    const char* itemName;
    ValueKind value;
    VOdxElement* (*child)(VOdxElement& owner);
    bool (*present)(VOdxElement& owner);
    void (*load)(VOdxElement& owner, std::string& text);
    void (*items)(VOdxElement& owner, const std::function<void(VOdxElement&)>& visit);
    void (*texts)(VOdxElement& owner, const std::function<void(const char*)>& visit);
    // Wrapper: only the items of these tags stand in this wrapper (a collection spread over
    // several wrappers by the kind of its items); all items where there is no list.
    const VOdxTagEnum* tags;
    uint16_t tagCount;
    // Element, Wrapper, Items: the XML names of children whose tag a document names otherwise.
    const TagName* names;
    uint16_t nameCount;
};

// What an element's own text content is.
// Reference: a typed link element, written with the attributes of the link object it holds.
enum class Content : uint8_t { None, Text, Markup, Date, Bytes, Reference };

struct ClassTable {
    const char* name;
    const AttributeRule* attributes;
    uint16_t attributeCount;
    // Sorted by name.
    const ChildRule* children;
    uint16_t childCount;
    Content content;
    // Content Text: the tag under which HandleTChar takes it.
    VOdxTagEnum contentTag;
    // The referencable classes take ID.
    bool referencable;
    // The members in document order.
    const MemberStep* steps;
    uint16_t stepCount;
    // Content Text: the text, for writing.
    void (*contentText)(VOdxElement& element, std::string& text);
    // The class names a fixed XML element for several tags: the tag goes to xsi:type.
    bool xsiType;
    // No element of its own: its members stand in the element that holds it.
    bool transparent;
    // The XML name of an element whose tag does not give it (a collection that stands as one
    // alternative of a choice); null where the element's tag gives it.
    const char* elementName;
};

struct CollectionTable {
    const char* name;
    // Sorted by name: the items, made with the collection's owner as parent and handed to
    // the collection.
    const ChildRule* items;
    uint16_t itemCount;
};

// The class table of an element's dynamic class; null for a class the tables do not know.
const ClassTable* TableOf(const VOdxElement& element);
// The table of the document root.
const ClassTable& RootTable();
// A child rule by XML name, or null.
const ChildRule* FindChild(const ChildRule* rules, uint16_t count, const char* name);
// Whether a name is that of a plural wrapper somewhere.
bool IsWrapperName(const char* name);
// Whether a member step takes an item of this tag (a wrapper may take some kinds only).
bool StepTakes(const MemberStep& step, VOdxTagEnum tag);
// The XML name a step gives a child: from its name list, the table's fixed name, or the tag.
std::string StepName(const MemberStep& step, const VOdxElement& child);
// The tag of an XML name, or TAG_UNSET.
VOdxTagEnum TagOfName(const char* name);
// The element and attribute names that some rule reads, sorted, each list ended by null.
extern const char* const kReadElementNames[];
extern const char* const kReadAttributeNames[];

} // namespace Internal
} // namespace NODX220Xml
