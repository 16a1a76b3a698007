"""Writes the XML layer's tables from the descriptions: for every class, its attributes, the
child elements it takes and how, its text content, and the walk over its children in document
order; for every enumeration its literals; and the lookup from XML names to tags."""

from descriptions import DescriptionError, LinkClass, schema_name, tag_enumerator
from emit_cpp import BANNER, cpp_string

VALUE_KIND = {"TChar": "Text", "UInt": "UInt", "Int": "Int", "Double": "Double", "Byte": "Byte",
              "Bool": "Bool"}
SCALAR_KIND = {"text": "Text", "u32": "UInt", "i32": "Int", "f64": "Double", "u8": "Byte",
               "bool": "Bool"}
CPP_SCALAR = {"u32": "uint32_t", "i32": "int32_t", "f64": "double", "u8": "uint8_t"}
# The value kind of the items of the hand-written collections of texts and numbers.
ITEM_KIND = {"VYATStringCollection": "Text", "VDoubleCollection": "Double", "VUIntCollection": "UInt"}

# The fields of the table structures of Tables.h, in their order, with the value each takes
# when a rule does not give it.
CHILD_RULE = [("name", None), ("tag", None), ("kind", None), ("value", "ValueKind::Text"),
              ("link", "LinkForm::Odxlink"), ("literals", "nullptr"), ("table", "nullptr"),
              ("make", "nullptr"), ("setLink", "nullptr"), ("collection", "nullptr"),
              ("collectionOf", "nullptr"), ("into", "nullptr"), ("present", "nullptr")]
MEMBER_STEP = [("kind", None), ("name", "nullptr"), ("itemName", "nullptr"), ("value", "ValueKind::Text"),
               ("child", "nullptr"), ("present", "nullptr"), ("load", "nullptr"), ("items", "nullptr"),
               ("texts", "nullptr"), ("tags", "nullptr"), ("tagCount", "0"), ("names", "nullptr"),
               ("nameCount", "0")]
CLASS_TABLE = [("name", None), ("attributes", "nullptr"), ("attributeCount", "0"), ("children", "nullptr"),
               ("childCount", "0"), ("content", "Content::None"), ("contentTag", "TAG_UNSET"),
               ("referencable", "false"), ("steps", "nullptr"), ("stepCount", "0"),
               ("contentText", "nullptr"), ("xsiType", "false"), ("transparent", "false"),
               ("elementName", "nullptr")]


def struct(fields, **values):
    """An aggregate initializer with every field, in order."""
    unknown = set(values) - {f for f, _ in fields}
    if unknown:
        raise ValueError(f"unknown fields {sorted(unknown)}")
    out = []
    for field, default in fields:
        value = values.get(field, default)
        if value is None:
            raise ValueError(f"field {field} needs a value")
        out.append(value)
    return "{" + ", ".join(out) + "}"


def ident(name):
    """A C++ identifier from a type name that may be nested (VOwner::VName)."""
    return name.replace("::", "_")


def _link_form(tag):
    if tag.endswith("-SNPATHREF") or tag == "SHORT-NAME-PATH":
        return "Snpathref"
    if tag.endswith("-SNREF"):
        return "Snref"
    return "Odxlink"


def _inner_class(form):
    return {"Odxlink": "VOdxlink", "Snref": "VSnref", "Snpathref": "VSnpathref"}[form]


class Tables:
    def __init__(self, model):
        self.model = model
        self.collections = {}       # ident -> rules of a wrapper's items
        self.wrappers = set()       # names of plural wrappers
        self.tag_lists = {}         # ident -> tags of a wrapper's filter
        self.name_lists = {}        # ident -> (tag, name) pairs
        self.choice_collections = {}  # collection name -> (collection, XML name)
        self.element_names = []     # every element name a class table reads
        self.attribute_names = []   # every attribute name a class table reads

    # -- classes that stand for a tag ------------------------------------------------------

    def class_for_tag(self, type_name, tag, where, member=None):
        """The class (or free-standing collection) that a place of this type makes for a tag:
        the one the member's make names, the one that stands for the tag, else the type itself
        where it is concrete."""
        model = self.model
        if member is not None and tag in member.make:
            return model.classes[member.make[tag]]
        if type_name in model.classes:
            base = model.classes[type_name]
            candidates = [c for c in model.classes.values()
                          if not c.abstract and (c is base or base in c.ancestors())]
        elif type_name in model.choices:
            choice = model.choices[type_name]
            for alternative, target in choice.get_as.items():
                if schema_name(alternative) == tag and target in model.collections:
                    coll = model.collections[target]
                    self.choice_collections[coll.name] = (coll, tag)
                    return coll
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

    # -- names --------------------------------------------------------------------------------

    @staticmethod
    def xml_names(member):
        """{ tag: XML name } for the tags that a document names otherwise."""
        names = {tag: name for name, tag in member.names.items()}
        xml = member.xml
        if member.kind in ("element", "choice") and isinstance(xml, str) and xml and \
                xml[0] not in "@#-" and "/" not in xml and member.tags:
            names.setdefault(member.tags[0], xml)
        return names

    def name_list(self, owner, member):
        names = self.xml_names(member)
        if not names:
            return {}
        key = f"kNames_{owner.name}_{member.name}"
        self.name_lists[key] = sorted(names.items())
        return {"names": key, "nameCount": str(len(names))}

    # -- rules -----------------------------------------------------------------------------

    def maker(self, cls):
        if cls.name == "VOdx":
            return "nullptr"
        if cls.name in self.model.collections:
            return (f"[](VOdxElement& parent, VOdxTagEnum) -> VOdxElement& {{ "
                    f"return VOdxFactory::Instance().{cls.make_name}(parent); }}")
        return (f"[](VOdxElement& parent, VOdxTagEnum tag) -> VOdxElement& {{ "
                f"return VOdxFactory::Instance().Make{cls.stem}(parent, tag); }}")

    def child_rule(self, name, tag, cls, into="nullptr", present="nullptr"):
        if isinstance(cls, LinkClass):
            form = _link_form(tag)
            set_link = (f"[](VOdxElement& element, ILink& link) {{ "
                        f"static_cast<{cls.name}&>(element).SetLink(link); }}")
            return (name, struct(CHILD_RULE, name=cpp_string(name), tag=tag_enumerator(tag),
                                 kind="ChildKind::Reference", link=f"LinkForm::{form}",
                                 table=f"&kTable_{_inner_class(form)}", make=self.maker(cls),
                                 setLink=set_link, into=into, present=present))
        return (name, struct(CHILD_RULE, name=cpp_string(name), tag=tag_enumerator(tag),
                             kind="ChildKind::Element", table=f"&kTable_{ident(cls.name)}",
                             make=self.maker(cls), into=into, present=present))

    def text_rule(self, name, tag, kind, literals="nullptr"):
        return (name, struct(CHILD_RULE, name=cpp_string(name), tag=tag_enumerator(tag),
                             kind="ChildKind::Text", value=f"ValueKind::{kind}", literals=literals))

    def item_rules(self, owner, member, tags, coll):
        """The rules of the items of a collection inside its wrapper, by their XML names."""
        names = self.xml_names(member)
        if coll.hand:
            if not member.item:
                raise DescriptionError(f"{owner.name}.{member.name}: a text collection names its item")
            self.model.check_tag(f"{owner.name}.{member.name}", member.item)
            return [self.text_rule(member.item, member.item, ITEM_KIND[coll.name])]
        return [self.child_rule(names.get(tag, tag), tag,
                                self.class_for_tag(coll.item, tag, f"{owner.name}.{member.name}"))
                for tag in tags]

    def accessor(self, owner, member):
        return (f"[](VOdxElement& owner) -> VOdxElement& {{ "
                f"return static_cast<{owner.name}&>(owner).{member.name}(); }}")

    def wrapper_rule(self, wrapper, tag, ident_name, collection_of):
        self.wrappers.add(wrapper)
        return (wrapper, struct(CHILD_RULE, name=cpp_string(wrapper), tag=tag_enumerator(tag),
                                kind="ChildKind::Wrapper", collection=f"&{ident_name}",
                                collectionOf=collection_of))

    # -- the members of a class in document order ----------------------------------------

    def ordered_entries(self, cls):
        """(member, wrapper) pairs in document order; wrapper is None but for a collection
        spread over several wrappers, which gives one entry per wrapper."""
        entries = []
        for m in cls.all_members():
            if m.wrappers:
                entries += [(m, w) for w in m.wrappers]
            else:
                entries.append((m, None))
        order_list = cls.xml_order
        for ancestor in cls.ancestors():
            if order_list is not None:
                break
            order_list = ancestor.xml_order
        if order_list:
            order = {name: i for i, name in enumerate(order_list)}

            def key(entry):
                m, w = entry
                return order.get(w if w is not None else m.name, order.get(m.name, len(order)))
            entries = sorted(entries, key=key)
        return entries

    def class_rules(self, cls):
        attributes, children, walk = [], [], []
        content, content_tag, content_text = "None", "TAG_UNSET", "nullptr"
        if cls.content:
            content = cls.content.capitalize()
        if isinstance(cls, LinkClass):
            content = "Reference"
        if cls.is_referencable():
            attributes.append(self.id_attribute(cls))
        for m, wrapper in self.ordered_entries(cls):
            xml = m.xml
            if xml == "-" or m.kind == "target":
                continue
            if isinstance(xml, str) and xml.startswith("@"):
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
                    literals = "nullptr"
                    kind = VALUE_KIND[m.handler]
                    if m.kind == "enum":
                        kind, literals = "Enum", f"&kEnum_{ident(m.type)}"
                    children.append(self.text_rule(name, m.tags[0], kind, literals))
                    walk.append(self.text_step(cls, m, name, kind, literals))
                continue
            if m.kind in ("element", "choice"):
                if m.handler != "Tag":
                    continue
                if isinstance(xml, str) and "/" in xml:
                    children.append(self.wrapped_element(cls, m, xml))
                    walk.append(self.wrapped_step(cls, m, xml.split("/")[0]))
                    continue
                present = f"[](VOdxElement& owner) {{ return static_cast<{cls.name}&>(owner).Has{m.name}(); }}"
                names = self.xml_names(m)
                compound_tags = self.compound_tags(m)
                for tag in m.tags:
                    target = self.class_for_tag(m.type, tag, f"{cls.name}.{m.name}", m)
                    into = self.into_compound(cls, m) if tag in compound_tags else "nullptr"
                    children.append(self.child_rule(names.get(tag, tag), tag, target, into=into, present=present))
                walk.append(self.member_step(cls, m))
                continue
            if m.kind == "collection":
                coll = self.model.collections[m.type]
                if wrapper is not None:
                    tags = m.wrappers[wrapper]
                    ident_name = f"kItems_{cls.name}_{m.name}_{ident(wrapper).replace('-', '_')}"
                    self.collections[ident_name] = self.item_rules(cls, m, tags, coll)
                    children.append(self.wrapper_rule(wrapper, tags[0], ident_name, self.accessor(cls, m)))
                    walk.append(self.collection_step(cls, m, coll, wrapper, tags))
                    continue
                name = xml if xml is not None else coll.plural
                if name == "":
                    into = "nullptr" if m.handler == "Tag" else self.accessor(cls, m)
                    names = self.xml_names(m)
                    for tag in coll.tags:
                        target = self.class_for_tag(coll.item, tag, f"{cls.name}.{m.name}")
                        children.append(self.child_rule(names.get(tag, tag), tag, target, into))
                else:
                    ident_name = f"kItems_{cls.name}_{m.name}"
                    self.collections[ident_name] = self.item_rules(cls, m, m.tags or coll.tags, coll)
                    children.append(self.wrapper_rule(name, (m.tags or coll.tags)[0], ident_name,
                                                      self.accessor(cls, m)))
                walk.append(self.collection_step(cls, m, coll, name, None))
        if isinstance(cls, LinkClass):
            walk.append(struct(MEMBER_STEP, kind="StepKind::Element",
                               child=f"[](VOdxElement& owner) -> VOdxElement* {{ auto& link = static_cast<{cls.name}&>(owner); "
                                     "return link.HasLink() ? dynamic_cast<VOdxElement*>(&link.GetLink()) : nullptr; }"))
        names = [n for n, _ in children]
        duplicates = {n for n in names if names.count(n) > 1}
        if duplicates:
            raise DescriptionError(f"{cls.name}: two children are named {sorted(duplicates)}")
        return attributes, sorted(children), walk, content, content_tag, content_text

    def compound_tags(self, m):
        """The tags that a transparent alternative of a choice member takes itself: a child of
        such a tag joins the compound the member holds rather than replacing it."""
        if m.kind != "choice":
            return set()
        tags = set()
        for c in self.model.classes.values():
            if c.transparent and any(e["interface"] == m.type for e in c.implements):
                tags |= {t for member in c.all_members() for t in member.tags if member.handler == "Tag"}
        return tags & set(m.tags)

    def into_compound(self, cls, m):
        return (f"[](VOdxElement& owner) -> VOdxElement& {{ auto& o = static_cast<{cls.name}&>(owner); "
                f"if (o.Has{m.name}()) {{ auto& held = dynamic_cast<VOdxElement&>(o.Get{m.name}()); "
                "const ClassTable* table = TableOf(held); if (table != nullptr && table->transparent) { return held; } } "
                "return owner; }")

    def wrapped_element(self, cls, m, xml):
        """A single child that documents hold inside a wrapper of its own (SDGS/SDG): the
        wrapper's items go to the owner itself, and the last one stays."""
        wrapper, item = xml.split("/")
        ident_name = f"kItems_{cls.name}_{m.name}"
        target = self.class_for_tag(m.type, m.tags[0], f"{cls.name}.{m.name}", m)
        self.collections[ident_name] = [self.child_rule(item, m.tags[0], target)]
        return self.wrapper_rule(wrapper, m.tags[0], ident_name,
                                 "[](VOdxElement& owner) -> VOdxElement& { return owner; }")

    def wrapped_step(self, cls, m, wrapper):
        items = (f"[](VOdxElement& o, const std::function<void(VOdxElement&)>& visit) {{ "
                 f"auto& owner = static_cast<{cls.name}&>(o); if (owner.Has{m.name}()) {{ "
                 f"visit(AsElement(owner.Get{m.name}())); }} }}")
        return struct(MEMBER_STEP, kind="StepKind::Wrapper", name=cpp_string(wrapper), items=items)

    def id_attribute(self, cls):
        c = cls.name
        return (f'{{"ID", ValueKind::Text, nullptr, '
                f"[](VOdxElement& e, const char* text, long long) {{ static_cast<{c}&>(e).SetId(text); }}, "
                f"[](VOdxElement& e) {{ return *static_cast<{c}&>(e).GetId() != '\\0'; }}, "
                f"[](VOdxElement& e, std::string& text) {{ text = static_cast<{c}&>(e).GetId(); }}}}")

    def attribute(self, cls, m, name):
        c, n = cls.name, m.name
        literals = "nullptr"
        present = f"static_cast<{c}&>(e).Has{n}()" if m.optional else "true"
        if m.kind == "enum":
            kind = "Enum"
            literals = f"&kEnum_{ident(m.type)}"
            store = f"static_cast<{c}&>(e).Set{n}(static_cast<{m.type}>(number));"
            value = f"static_cast<int>(static_cast<{c}&>(e).Get{n}())"
            load = f"text = EnumText(kEnum_{ident(m.type)}, {value});"
            if not m.optional:
                # A value without a literal (the constructor's default) is not written.
                present = f"*EnumText(kEnum_{ident(m.type)}, {value}) != '\\0'"
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
        return struct(MEMBER_STEP, kind="StepKind::Element",
                      child=f"[](VOdxElement& o) -> VOdxElement* {{ {get} }}", **self.name_list(cls, m))

    def text_step(self, cls, m, name, kind, literals):
        c, n = cls.name, m.name
        present = f"static_cast<{c}&>(o).Has{n}()" if m.optional else "true"
        if m.type == "text":
            load = f"text = static_cast<{c}&>(o).Get{n}();"
        elif m.type == "bool":
            load = f'text = static_cast<{c}&>(o).Is{n}() ? "true" : "false";'
        elif m.type == "f64":
            load = f"text = FormatDouble(static_cast<{c}&>(o).Get{n}());"
        elif m.kind == "enum":
            value = f"static_cast<int>(static_cast<{c}&>(o).Get{n}())"
            load = f"text = EnumText(*{literals}, {value});"
            if not m.optional:
                present = f"*EnumText(*{literals}, {value}) != '\\0'"
        else:
            load = f"text = std::to_string(static_cast<{c}&>(o).Get{n}());"
        unused = "(void)o; " if present == "true" else ""
        return struct(MEMBER_STEP, kind="StepKind::Text", name=cpp_string(name), value=f"ValueKind::{kind}",
                      present=f"[](VOdxElement& o) {{ {unused}return {present}; }}",
                      load=f"[](VOdxElement& o, std::string& text) {{ {load} }}")

    def collection_step(self, cls, m, coll, wrapper, tags):
        c = cls.name
        if coll.hand:
            return struct(MEMBER_STEP, kind="StepKind::TextWrapper", name=cpp_string(wrapper),
                          itemName=cpp_string(m.item or ""),
                          texts=self.texts_lambda(f"static_cast<{c}&>(o).{m.name}()", coll))
        items = (f"[](VOdxElement& o, const std::function<void(VOdxElement&)>& visit) {{ "
                 f"for (auto& item : static_cast<{c}&>(o).{m.name}()) {{ visit(AsElement(item)); }} }}")
        extra = self.name_list(cls, m)
        if tags is not None:
            key = f"kTags_{c}_{m.name}_{ident(wrapper).replace('-', '_')}"
            self.tag_lists[key] = tags
            extra.update(tags=key, tagCount=str(len(tags)))
        if wrapper == "":
            return struct(MEMBER_STEP, kind="StepKind::Items", items=items, **extra)
        return struct(MEMBER_STEP, kind="StepKind::Wrapper", name=cpp_string(wrapper), items=items, **extra)

    @staticmethod
    def texts_lambda(collection, coll):
        if coll.name == "VYATStringCollection":
            loop = f"for (auto& text : {collection}) {{ visit(text.GetBuffer()); }}"
        else:
            value = "FormatDouble(values.At(i))" if coll.name == "VDoubleCollection" else \
                "std::to_string(values.At(i))"
            loop = (f"auto& values = {collection}; "
                    f"for (uint32_t i = 0; i < values.Size(); ++i) {{ visit({value}.c_str()); }}")
        return f"[](VOdxElement& o, const std::function<void(const char*)>& visit) {{ {loop} }}"

    # -- free-standing collections that stand as one alternative of a choice -------------------

    def choice_collection_table(self, coll, xml_name):
        """A collection handed to its owner as a choice: it reads and writes as an element of
        its own, named by the choice's tag, whose children are its items."""
        name = ident(coll.name)
        expr = f"static_cast<{coll.name}&>(o)"
        if coll.hand:
            item = "DTC-VALUE"
            self.model.check_tag(coll.name, item)
            children = [self.text_rule(item, item, ITEM_KIND[coll.name])]
            steps = [struct(MEMBER_STEP, kind="StepKind::TextItems", itemName=cpp_string(item),
                            texts=self.texts_lambda(expr, coll))]
        else:
            children = [self.child_rule(tag, tag, self.class_for_tag(coll.item, tag, coll.name))
                        for tag in coll.tags]
            steps = [struct(MEMBER_STEP, kind="StepKind::Items",
                            items=f"[](VOdxElement& o, const std::function<void(VOdxElement&)>& visit) {{ "
                                  f"for (auto& item : {expr}) {{ visit(AsElement(item)); }} }}")]
        children = sorted(children)
        self.element_names += [n for n, _ in children]
        block = [f"\n// {coll.name}, written as {xml_name}\n",
                 f"const ChildRule kChildren_{name}[] = {{\n" + "".join(f"    {r},\n" for _, r in children) + "};\n",
                 f"const MemberStep kSteps_{name}[] = {{\n" + "".join(f"    {s},\n" for s in steps) + "};\n",
                 "const ClassTable kTable_" + name + " = " +
                 struct(CLASS_TABLE, name=cpp_string(coll.name), children=f"kChildren_{name}",
                        childCount=str(len(children)), steps=f"kSteps_{name}", stepCount=str(len(steps)),
                        elementName=cpp_string(xml_name)) + ";\n"]
        return "".join(block)

    # -- output ------------------------------------------------------------------------------

    def emit(self):
        model = self.model
        classes = sorted((c for c in model.classes.values() if not c.abstract), key=lambda c: c.name)
        bodies = []
        for cls in classes:
            attributes, children, walk, content, content_tag, content_text = self.class_rules(cls)
            self.element_names += [name for name, _ in children]
            self.attribute_names += [a.split('"')[1] for a in attributes]
            n = ident(cls.name)
            block = [f"\n// {cls.name}\n"]
            if attributes:
                block.append(f"const AttributeRule kAttributes_{n}[] = {{\n" +
                             "".join(f"    {a},\n" for a in attributes) + "};\n")
            if children:
                block.append(f"const ChildRule kChildren_{n}[] = {{\n" +
                             "".join(f"    {r},\n" for _, r in children) + "};\n")
            if walk:
                block.append(f"const MemberStep kSteps_{n}[] = {{\n" + "".join(f"    {w},\n" for w in walk) + "};\n")
            block.append(f"const ClassTable kTable_{n} = " + struct(
                CLASS_TABLE, name=cpp_string(cls.name),
                attributes=f"kAttributes_{n}" if attributes else "nullptr", attributeCount=str(len(attributes)),
                children=f"kChildren_{n}" if children else "nullptr", childCount=str(len(children)),
                content=f"Content::{content}", contentTag=content_tag,
                referencable="true" if cls.is_referencable() else "false",
                steps=f"kSteps_{n}" if walk else "nullptr", stepCount=str(len(walk)), contentText=content_text,
                xsiType="true" if cls.fixed_xml_tag() else "false",
                transparent="true" if cls.transparent else "false") + ";\n")
            bodies.append("".join(block))
        collection_bodies = [self.choice_collection_table(coll, name)
                             for coll, name in sorted(self.choice_collections.values(), key=lambda e: e[0].name)]
        table_names = [ident(c.name) for c in classes] + sorted(ident(c) for c in self.choice_collections)
        out = [BANNER + '#include <cstdlib>\n#include <cstring>\n#include <string>\n#include <typeindex>\n'
               '#include <unordered_map>\n\n#include "Tables.h"\n#include "TableSupport.h"\n'
               '#include "TesselODX220Model.h"\n\n'
               "namespace NODX220Xml {\nnamespace Internal {\n\nusing namespace NODX220;\n\n"
               "namespace {\n"]
        out.append("".join(f"extern const ClassTable kTable_{n};\n" for n in table_names))
        for enum in sorted(model.enums.values(), key=lambda e: e.name):
            if not enum.literals:
                continue
            e = ident(enum.name)
            lits = ", ".join(cpp_string(l) for l in enum.literals)
            vals = ", ".join(str(v) for v in enum.values)
            out.append(f"\nconst char* const kLiterals_{e}[] = {{{lits}}};\n"
                       f"const int kValues_{e}[] = {{{vals}}};\n"
                       f"const EnumLiterals kEnum_{e} = {{{cpp_string(enum.name)}, kLiterals_{e}, "
                       f"kValues_{e}, {len(enum.literals)}}};\n")
        for key, tags in sorted(self.tag_lists.items()):
            out.append(f"const VOdxTagEnum {key}[] = {{{', '.join(tag_enumerator(t) for t in tags)}}};\n")
        for key, pairs in sorted(self.name_lists.items()):
            out.append(f"const TagName {key}[] = {{" +
                       ", ".join(f"{{{tag_enumerator(t)}, {cpp_string(n)}}}" for t, n in pairs) + "};\n")
        items = []
        for ident_name, rules in sorted(self.collections.items()):
            rules = sorted(rules)
            items.append(f"\nconst ChildRule {ident_name}Rules[] = {{\n" + "".join(f"    {r},\n" for _, r in rules) +
                         f"}};\nconst CollectionTable {ident_name} = {{{cpp_string(ident_name)}, {ident_name}Rules, "
                         f"{len(rules)}}};\n")
        out.append("".join(f"extern const CollectionTable {i};\n" for i in sorted(self.collections)))
        out += bodies + collection_bodies + items
        typed = [(c.name, ident(c.name)) for c in classes] + \
                sorted((c, ident(c)) for c in self.choice_collections)
        out.append("\n} // namespace\n\nconst ClassTable* TableOf(const VOdxElement& element)\n{\n"
                   "    static const std::unordered_map<std::type_index, const ClassTable*> tables = {\n" +
                   "".join(f"        {{typeid({c}), &kTable_{n}}},\n" for c, n in typed) +
                   "    };\n    auto found = tables.find(typeid(element));\n"
                   "    return found != tables.end() ? found->second : nullptr;\n}\n\n"
                   "const ClassTable& RootTable()\n{\n    return kTable_VOdx;\n}\n\n")
        element_names = set(self.element_names) | {n for rules in self.collections.values() for n, _ in rules}
        # The names of families whose kinds documents give by xsi:type.
        element_names |= {c.xml_tag for c in model.classes.values() if c.xml_tag}
        attribute_names = sorted(set(self.attribute_names))
        out.append("const char* const kReadElementNames[] = {\n" +
                   "".join(f"    {cpp_string(n)},\n" for n in sorted(element_names)) + "    nullptr};\n\n"
                   "const char* const kReadAttributeNames[] = {\n" +
                   "".join(f"    {cpp_string(n)},\n" for n in attribute_names) + "    nullptr};\n\n")
        wrappers = sorted(self.wrappers)
        out.append("bool IsWrapperName(const char* name)\n{\n"
                   "    static const char* const kWrappers[] = {\n" +
                   "".join(f"        {cpp_string(w)},\n" for w in wrappers) +
                   "    };\n    for (const char* wrapper : kWrappers) {\n"
                   "        if (std::strcmp(wrapper, name) == 0) {\n            return true;\n        }\n    }\n"
                   "    return false;\n}\n\n")
        tags = sorted(model.tags)
        out.append("namespace {\n\nstruct NameOfTag {\n    const char* name;\n    VOdxTagEnum tag;\n};\n\n"
                   "// Sorted by name, for a binary search.\nconst NameOfTag kTagNames[] = {\n" +
                   "".join(f"    {{{cpp_string(t)}, {tag_enumerator(t)}}},\n" for t in tags) +
                   "};\n\n} // namespace\n\nVOdxTagEnum TagOfName(const char* name)\n{\n"
                   "    const NameOfTag* first = kTagNames;\n"
                   f"    const NameOfTag* last = kTagNames + {len(tags)};\n"
                   "    while (first < last) {\n        const NameOfTag* middle = first + (last - first) / 2;\n"
                   "        const int order = std::strcmp(middle->name, name);\n"
                   "        if (order == 0) {\n            return middle->tag;\n        }\n"
                   "        if (order < 0) {\n            first = middle + 1;\n        } else {\n"
                   "            last = middle;\n        }\n    }\n    return TAG_UNSET;\n}\n\n"
                   "} // namespace Internal\n} // namespace NODX220Xml\n")
        return "".join(out)


def emit_xml(model):
    return {"xml/XmlTables.cpp": Tables(model).emit()}
