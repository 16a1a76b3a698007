"""Writes the XML layer's tables from the descriptions: for every class, its attributes, the
child elements it takes and how, its text content, and the walk over its children; for every
enumeration its literals; and the lookup from XML names to tags."""

from descriptions import DescriptionError, LinkClass, tag_enumerator
from emit_cpp import BANNER, cpp_string

VALUE_KIND = {"TChar": "Text", "UInt": "UInt", "Int": "Int", "Double": "Double", "Byte": "Byte",
              "Bool": "Bool"}
SCALAR_KIND = {"text": "Text", "u32": "UInt", "i32": "Int", "f64": "Double", "u8": "Byte",
               "bool": "Bool"}
CPP_SCALAR = {"u32": "uint32_t", "i32": "int32_t", "f64": "double", "u8": "uint8_t"}


def _link_form(tag):
    if tag.endswith("-SNPATHREF"):
        return "Snpathref"
    if tag.endswith("-SNREF"):
        return "Snref"
    return "Odxlink"


def _inner_class(form):
    return {"Odxlink": "VOdxlink", "Snref": "VSnref", "Snpathref": "VSnpathref"}[form]


class Tables:
    def __init__(self, model):
        self.model = model
        self.defs = []          # definitions in order
        self.collections = {}   # name -> (items)
        self.wrappers = set()     # names of plural wrappers

    # -- classes that stand for a tag ------------------------------------------------------

    def class_for_tag(self, type_name, tag, where):
        """The concrete class that a place of this type makes for this tag: the one that stands
        for the tag, else the type itself where it is concrete."""
        model = self.model
        if type_name in model.classes:
            base = model.classes[type_name]
            candidates = [c for c in model.classes.values()
                          if not c.abstract and (c is base or base in c.ancestors())]
        elif type_name in model.choices:
            candidates = [c for c in model.classes.values() if not c.abstract and
                          any(e["interface"] == type_name for o in [c] + c.ancestors() for e in o.implements)]
        else:
            raise DescriptionError(f"{where}: {type_name} has no classes")
        for c in sorted(candidates, key=lambda c: c.name):
            if c.tag == tag or isinstance(c, LinkClass) and tag in c.link_tags:
                return c
        if type_name in model.classes and not model.classes[type_name].abstract:
            return model.classes[type_name]
        raise DescriptionError(f"{where}: no class stands for {tag}")

    # -- rules -----------------------------------------------------------------------------

    def maker(self, cls):
        if cls.name == "VOdx":
            return "nullptr"
        return (f"[](VOdxElement& parent, VOdxTagEnum tag) -> VOdxElement& {{ "
                f"return VOdxFactory::Instance().Make{cls.stem}(parent, tag); }}")

    def child_rule(self, name, tag, cls, into="nullptr", present="nullptr"):
        if isinstance(cls, LinkClass):
            form = _link_form(tag)
            set_link = (f"[](VOdxElement& element, ILink& link) {{ "
                        f"static_cast<{cls.name}&>(element).SetLink(link); }}")
            return (name, f"{{{cpp_string(name)}, {tag_enumerator(tag)}, ChildKind::Reference, ValueKind::Text, "
                          f"LinkForm::{form}, &kTable_{_inner_class(form)}, {self.maker(cls)}, {set_link}, "
                          f"nullptr, nullptr, {into}, {present}}}")
        return (name, f"{{{cpp_string(name)}, {tag_enumerator(tag)}, ChildKind::Element, ValueKind::Text, "
                      f"LinkForm::Odxlink, &kTable_{cls.name}, {self.maker(cls)}, nullptr, nullptr, nullptr, {into}, "
                      f"{present}}}")

    def text_rule(self, name, tag, kind):
        return (name, f"{{{cpp_string(name)}, {tag_enumerator(tag)}, ChildKind::Text, ValueKind::{kind}, "
                      "LinkForm::Odxlink, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr}")

    def collection_items(self, owner, member):
        coll = self.model.collections[member.type]
        ident = f"kItems_{owner.name}_{member.name}"
        if coll.hand:
            if not member.item:
                raise DescriptionError(f"{owner.name}.{member.name}: a text collection names its item")
            self.model.check_tag(f"{owner.name}.{member.name}", member.item)
            rules = [self.text_rule(member.item, member.item, "Text")]
        else:
            rules = [self.child_rule(tag, tag, self.class_for_tag(coll.item, tag, coll.name))
                     for tag in coll.tags]
        return ident, rules

    def accessor(self, owner, member):
        return (f"[](VOdxElement& owner) -> VOdxElement& {{ "
                f"return static_cast<{owner.name}&>(owner).{member.name}(); }}")

    def class_rules(self, cls):
        attributes, children, walk = [], [], []
        content, content_tag, content_text = "None", "TAG_UNSET", "nullptr"
        if cls.content:
            content = cls.content.capitalize()
        if isinstance(cls, LinkClass):
            content = "Reference"
        if cls.is_referencable():
            attributes.append(self.id_attribute(cls))
        members = cls.all_members()
        if cls.xml_order:
            order = {name: i for i, name in enumerate(cls.xml_order)}
            members = sorted(members, key=lambda m: order.get(m.name, len(order)))
        for m in members:
            xml = m.xml
            if xml == "-":
                continue
            if xml is not None and xml.startswith("@"):
                attributes.append(self.attribute(cls, m, xml[1:]))
                continue
            if xml == "#text":
                if m.handler:
                    content, content_tag = "Text", tag_enumerator(m.tags[0])
                    content_text = (f"[](VOdxElement& e, std::string& text) {{ "
                                    f"text = static_cast<{cls.name}&>(e).Get{m.name}(); }}")
                continue
            if m.kind in ("scalar", "enum"):
                if m.handler and m.handler != "Tag":
                    name = xml or m.tags[0]
                    children.append(self.text_rule(name, m.tags[0], VALUE_KIND[m.handler]))
                    walk.append(self.text_step(cls, m, name, VALUE_KIND[m.handler]))
                continue
            if m.kind in ("element", "choice"):
                if m.handler != "Tag":
                    continue
                present = (f"[](VOdxElement& owner) {{ return static_cast<{cls.name}&>(owner).Has{m.name}(); }}")
                for i, tag in enumerate(m.tags):
                    name = xml if xml and i == 0 else tag
                    target = self.class_for_tag(m.type, tag, f"{cls.name}.{m.name}")
                    children.append(self.child_rule(name, tag, target, present=present))
                walk.append(self.member_step(cls, m))
                continue
            if m.kind == "collection":
                coll = self.model.collections[m.type]
                wrapper = xml if xml is not None else coll.plural
                if wrapper == "":
                    into = "nullptr" if m.handler == "Tag" else self.accessor(cls, m)
                    for tag in coll.tags:
                        target = self.class_for_tag(coll.item, tag, f"{cls.name}.{m.name}")
                        children.append(self.child_rule(tag, tag, target, into))
                else:
                    ident, rules = self.collection_items(cls, m)
                    self.collections[ident] = rules
                    self.wrappers.add(wrapper)
                    children.append((wrapper, f"{{{cpp_string(wrapper)}, {tag_enumerator(m.tags[0])}, "
                                              "ChildKind::Wrapper, ValueKind::Text, LinkForm::Odxlink, nullptr, "
                                              f"nullptr, nullptr, &{ident}, {self.accessor(cls, m)}, nullptr, nullptr}}"))
                walk.append(self.collection_step(cls, m, coll, wrapper))
        if isinstance(cls, LinkClass):
            walk.append("{StepKind::Element, nullptr, nullptr, ValueKind::Text, [](VOdxElement& owner) -> VOdxElement* { "
                        f"auto& link = static_cast<{cls.name}&>(owner); "
                        "return link.HasLink() ? dynamic_cast<VOdxElement*>(&link.GetLink()) : nullptr; }, "
                        "nullptr, nullptr, nullptr, nullptr}")
        names = [n for n, _ in children]
        duplicates = {n for n in names if names.count(n) > 1}
        if duplicates:
            raise DescriptionError(f"{cls.name}: two children are named {sorted(duplicates)}")
        return attributes, sorted(children), walk, content, content_tag, content_text

    def id_attribute(self, cls):
        c = cls.name
        return (f'{{"ID", ValueKind::Text, nullptr, '
                f"[](VOdxElement& e, const char* text, long long) {{ static_cast<{c}&>(e).SetId(text); }}, "
                f"[](VOdxElement& e) {{ return *static_cast<{c}&>(e).GetId() != '\\0'; }}, "
                f"[](VOdxElement& e, std::string& text) {{ text = static_cast<{c}&>(e).GetId(); }}}}")

    def attribute(self, cls, m, name):
        c, n = cls.name, m.name
        literals = "nullptr"
        if m.kind == "enum":
            kind = "Enum"
            literals = f"&kEnum_{m.type}"
            store = f"static_cast<{c}&>(e).Set{n}(static_cast<{m.type}>(number));"
            load = f"text = EnumText(kEnum_{m.type}, static_cast<int>(static_cast<{c}&>(e).Get{n}()));"
        elif m.type == "text":
            kind = "Text"
            store = f"static_cast<{c}&>(e).Set{n}(text);"
            load = f"text = static_cast<{c}&>(e).Get{n}();"
        elif m.type == "bool":
            kind = "Bool"
            store = f"static_cast<{c}&>(e).Is{n}(number != 0);"
            load = f'text = static_cast<{c}&>(e).Is{n}() ? "true" : "false";'
        else:
            kind = SCALAR_KIND[m.type]
            cpp = CPP_SCALAR[m.type]
            if m.type == "f64":
                store = f"static_cast<{c}&>(e).Set{n}(std::strtod(text, nullptr));"
                load = f"text = FormatDouble(static_cast<{c}&>(e).Get{n}());"
            else:
                store = f"static_cast<{c}&>(e).Set{n}(static_cast<{cpp}>(number));"
                load = f"text = std::to_string(static_cast<{c}&>(e).Get{n}());"
        present = f"static_cast<{c}&>(e).Has{n}()" if m.optional else "true"
        unused = "(void)e; " if present == "true" else ""
        return (f"{{{cpp_string(name)}, ValueKind::{kind}, {literals}, "
                f"[](VOdxElement& e, const char* text, long long number) {{ (void)text; (void)number; {store} }}, "
                f"[](VOdxElement& e) {{ {unused}return {present}; }}, "
                f"[](VOdxElement& e, std::string& text) {{ {load} }}}}")

    def member_step(self, cls, m):
        c = cls.name
        cast = "dynamic_cast" if m.kind == "choice" else "static_cast"
        get = (f"auto& owner = static_cast<{c}&>(o); return owner.Has{m.name}() ? "
               f"{cast}<VOdxElement*>(&owner.Get{m.name}()) : nullptr;")
        return (f"{{StepKind::Element, nullptr, nullptr, ValueKind::Text, "
                f"[](VOdxElement& o) -> VOdxElement* {{ {get} }}, nullptr, nullptr, nullptr, nullptr}}")

    def text_step(self, cls, m, name, kind):
        c, n = cls.name, m.name
        present = f"static_cast<{c}&>(o).Has{n}()" if m.optional else "true"
        unused = "(void)o; " if present == "true" else ""
        if m.type == "text":
            load = f"text = static_cast<{c}&>(o).Get{n}();"
        elif m.type == "bool":
            load = f'text = static_cast<{c}&>(o).Is{n}() ? "true" : "false";'
        elif m.type == "f64":
            load = f"text = FormatDouble(static_cast<{c}&>(o).Get{n}());"
        elif m.kind == "enum":
            load = f"text = std::to_string(static_cast<int>(static_cast<{c}&>(o).Get{n}()));"
        else:
            load = f"text = std::to_string(static_cast<{c}&>(o).Get{n}());"
        return (f"{{StepKind::Text, {cpp_string(name)}, nullptr, ValueKind::{kind}, nullptr, "
                f"[](VOdxElement& o) {{ {unused}return {present}; }}, "
                f"[](VOdxElement& o, std::string& text) {{ {load} }}, nullptr, nullptr}}")

    def collection_step(self, cls, m, coll, wrapper):
        c = cls.name
        if coll.hand:
            texts = (f"[](VOdxElement& o, const std::function<void(const char*)>& visit) {{ "
                     f"for (auto& text : static_cast<{c}&>(o).{m.name}()) {{ visit(text.GetBuffer()); }} }}")
            return (f"{{StepKind::TextWrapper, {cpp_string(wrapper)}, {cpp_string(m.item or '')}, ValueKind::Text, "
                    f"nullptr, nullptr, nullptr, nullptr, {texts}}}")
        items = (f"[](VOdxElement& o, const std::function<void(VOdxElement&)>& visit) {{ "
                 f"for (auto& item : static_cast<{c}&>(o).{m.name}()) {{ visit(AsElement(item)); }} }}")
        kind = "Items" if wrapper == "" else "Wrapper"
        name = "nullptr" if wrapper == "" else cpp_string(wrapper)
        return (f"{{StepKind::{kind}, {name}, nullptr, ValueKind::Text, nullptr, nullptr, nullptr, {items}, nullptr}}")

    # -- output ------------------------------------------------------------------------------

    def emit(self):
        model = self.model
        classes = sorted((c for c in model.classes.values() if not c.abstract), key=lambda c: c.name)
        out = [BANNER + '#include <cstdlib>\n#include <cstring>\n#include <string>\n#include <typeindex>\n'
               '#include <unordered_map>\n\n#include "Tables.h"\n#include "TableSupport.h"\n'
               '#include "TesselODX220Model.h"\n\n'
               "namespace NODX220Xml {\nnamespace Internal {\n\nusing namespace NODX220;\n\n"
               "namespace {\n"]
        out.append("".join(f"extern const ClassTable kTable_{c.name};\n" for c in classes))
        for enum in sorted(model.enums.values(), key=lambda e: e.name):
            if not enum.literals:
                continue
            lits = ", ".join(cpp_string(l) for l in enum.literals)
            vals = ", ".join(str(v) for v in enum.values)
            out.append(f"\nconst char* const kLiterals_{enum.name}[] = {{{lits}}};\n"
                       f"const int kValues_{enum.name}[] = {{{vals}}};\n"
                       f"const EnumLiterals kEnum_{enum.name} = {{{cpp_string(enum.name)}, kLiterals_{enum.name}, "
                       f"kValues_{enum.name}, {len(enum.literals)}}};\n")
        bodies = []
        for cls in classes:
            attributes, children, walk, content, content_tag, content_text = self.class_rules(cls)
            n = cls.name
            block = [f"\n// {n}\n"]
            if attributes:
                block.append(f"const AttributeRule kAttributes_{n}[] = {{\n" +
                             "".join(f"    {a},\n" for a in attributes) + "};\n")
            if children:
                block.append(f"const ChildRule kChildren_{n}[] = {{\n" +
                             "".join(f"    {r},\n" for _, r in children) + "};\n")
            if walk:
                block.append(f"const MemberStep kSteps_{n}[] = {{\n" + "".join(f"    {w},\n" for w in walk) + "};\n")
            block.append(f"const ClassTable kTable_{n} = {{{cpp_string(n)}, "
                         f"{'kAttributes_' + n if attributes else 'nullptr'}, {len(attributes)}, "
                         f"{'kChildren_' + n if children else 'nullptr'}, {len(children)}, "
                         f"Content::{content}, {content_tag}, {'true' if cls.is_referencable() else 'false'}, "
                         f"{'kSteps_' + n if walk else 'nullptr'}, {len(walk)}, {content_text}}};\n")
            bodies.append("".join(block))
        items = []
        for ident, rules in sorted(self.collections.items()):
            rules = sorted(rules)
            items.append(f"\nconst ChildRule {ident}Rules[] = {{\n" + "".join(f"    {r},\n" for _, r in rules) +
                         f"}};\nconst CollectionTable {ident} = {{{cpp_string(ident)}, {ident}Rules, {len(rules)}}};\n")
        out.append("".join(f"extern const CollectionTable {i};\n" for i in sorted(self.collections)))
        out += bodies + items
        out.append("\n} // namespace\n\nconst ClassTable* TableOf(const VOdxElement& element)\n{\n"
                   "    static const std::unordered_map<std::type_index, const ClassTable*> tables = {\n" +
                   "".join(f"        {{typeid({c.name}), &kTable_{c.name}}},\n" for c in classes) +
                   "    };\n    auto found = tables.find(typeid(element));\n"
                   "    return found != tables.end() ? found->second : nullptr;\n}\n\n"
                   "const ClassTable& RootTable()\n{\n    return kTable_VOdx;\n}\n\n")
        wrappers = sorted(self.wrappers)
        out.append("bool IsWrapperName(const char* name)\n{\n"
                   "    static const char* const kWrappers[] = {\n" +
                   "".join(f"        {cpp_string(w)},\n" for w in wrappers) +
                   "    };\n    for (const char* wrapper : kWrappers) {\n"
                   "        if (std::strcmp(wrapper, name) == 0) {\n            return true;\n        }\n    }\n"
                   "    return false;\n}\n\n")
        tags = sorted(model.tags)
        out.append("namespace {\n\nstruct TagName {\n    const char* name;\n    VOdxTagEnum tag;\n};\n\n"
                   "// Sorted by name, for a binary search.\nconst TagName kTagNames[] = {\n" +
                   "".join(f"    {{{cpp_string(t)}, {tag_enumerator(t)}}},\n" for t in tags) +
                   "};\n\n} // namespace\n\nVOdxTagEnum TagOfName(const char* name)\n{\n"
                   "    const TagName* first = kTagNames;\n"
                   f"    const TagName* last = kTagNames + {len(tags)};\n"
                   "    while (first < last) {\n        const TagName* middle = first + (last - first) / 2;\n"
                   "        const int order = std::strcmp(middle->name, name);\n"
                   "        if (order == 0) {\n            return middle->tag;\n        }\n"
                   "        if (order < 0) {\n            first = middle + 1;\n        } else {\n"
                   "            last = middle;\n        }\n    }\n    return TAG_UNSET;\n}\n\n"
                   "} // namespace Internal\n} // namespace NODX220Xml\n")
        return "".join(out)


def emit_xml(model):
    return {"xml/XmlTables.cpp": Tables(model).emit()}
