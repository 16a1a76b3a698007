"""Writes conformance tests from the descriptions: for every generated class and collection,
what its record promises (defaults, absent members, assertion texts, the tags it takes and
refuses, copies) is checked against the compiled code, so that a wrong record or template
fails loudly."""

from descriptions import LinkClass, tag_enumerator
from emit_cpp import BANNER, cpp_string
from emit_xml import Tables

# A value per handler that differs from every default, and how the getter reads it back.
SAMPLE = {
    "TChar": ('"conformance"', 'EXPECT_STREQ(element.Get{name}(), "conformance");'),
    "UInt": ("7u", "EXPECT_EQ(element.Get{name}(), 7u);"),
    "Int": ("-7", "EXPECT_EQ(element.Get{name}(), -7);"),
    "Double": ("2.5", "EXPECT_DOUBLE_EQ(element.Get{name}(), 2.5);"),
    "Byte": ("7", "EXPECT_EQ(element.Get{name}(), 7);"),
    "Bool": ("true", "EXPECT_TRUE(element.Is{name}());"),
}


NUMBER_COLLECTIONS = {"VDoubleCollection", "VUIntCollection"}


def _count(m):
    """How a collection member tells its number of items."""
    return "Size()" if m.type in NUMBER_COLLECTIONS else "Count()"


def _empty_check(m):
    return f"EXPECT_TRUE(element.{m.name}().IsEmpty());"


def _default_check(model, m):
    if m.kind == "scalar" and m.type == "text":
        text = m.default if m.default is not None else ""
        return [f"EXPECT_STREQ(element.Get{m.name}(), {cpp_string(text)});"]
    if m.kind == "scalar" and m.type == "bool":
        return [f"EXPECT_EQ(element.Is{m.name}(), {'true' if m.default else 'false'});"]
    if m.kind == "scalar":
        value = m.default if m.default is not None else 0
        return [f"EXPECT_EQ(element.Get{m.name}(), {value});"]
    if m.kind == "enum":
        value = m.default if m.default is not None else 0
        return [f"EXPECT_EQ(static_cast<int>(element.Get{m.name}()), {value});"]
    if m.kind == "element":
        text = m.assert_text or f"{m.field}.Pointee() != NULL"
        return [f"ExpectAssertion([&] {{ element.Get{m.name}(); }}, {cpp_string(text)});"]
    if m.kind == "collection":
        return [_empty_check(m)]
    if m.kind == "choice":
        text = m.assert_text or f"{m.field}!= NULL"
        return [f"ExpectAssertion([&] {{ element.Get{m.name}(); }}, {cpp_string(text)});"]
    if m.kind == "target":
        text = m.assert_text or f"mp{m.name}!= NULL"
        return [f"ExpectAssertion([&] {{ element.Get{m.name}(); }}, {cpp_string(text)});"]
    return []


def _setter_sample(m):
    """(call that sets a value through the accessor, check of it on `element`) for a value
    member, with a value that differs from the default; None where there is none."""
    if m.kind == "scalar" and m.type == "text":
        return (f'Set{m.name}("conformance")', f'EXPECT_STREQ(element.Get{m.name}(), "conformance");')
    if m.kind == "scalar" and m.type == "bool":
        value = "false" if m.default else "true"
        return (f"Is{m.name}({value})", f"EXPECT_EQ(element.Is{m.name}(), {value});")
    if m.kind == "scalar":
        value = {"u32": "7u", "i32": "-7", "f64": "2.5", "u8": "7"}[m.type]
        check = "EXPECT_DOUBLE_EQ" if m.type == "f64" else "EXPECT_EQ"
        return (f"Set{m.name}({value})", f"{check}(element.Get{m.name}(), {value});")
    if m.kind == "enum":
        value = 0 if m.default not in (None, 0) else 1
        return (f"Set{m.name}(static_cast<{m.type}>({value}))",
                f"EXPECT_EQ(static_cast<int>(element.Get{m.name}()), {value});")
    return None


def _class_test(model, cls, tables):
    members = cls.all_members()
    tag = tag_enumerator(cls.tag) if cls.tag else "TAG_UNSET"
    # The second member of an exclusive pair is left alone: the first would keep it out.
    blocked = set()
    for m in members:
        if m.exclusive and m.name not in blocked:
            blocked.add(m.exclusive)
    hand_tags = any("Tag" in c.hand_handlers for c in [cls] + cls.ancestors())
    lines = [f"TEST(Conformance, {cls.stem})", "{", "    Document document;",
             f"    {cls.name}& element = document.factory.Make{cls.stem}(document.host, {tag});",
             "    document.Adopt(element);", "",
             "    // Identity after construction.",
             f"    EXPECT_EQ(element.GetOdxTag(), {tag});",
             "    EXPECT_EQ(&element.GetParent(), &document.host);",
             "    EXPECT_EQ(&element.GetRootElement(), &document.root);"]
    fixed = cls.fixed_xml_tag()
    if fixed:
        lines.append(f"    EXPECT_STREQ(element.GetXmlTag().GetBuffer(), {cpp_string(fixed)});")
    lines += ["", "    // Defaults: optional members absent, getters of absent children fail."]
    for m in members:
        if m.optional or m.kind in ("element", "choice", "target"):
            lines.append(f"    EXPECT_FALSE(element.Has{m.name}());")
        lines += ["    " + l for l in _default_check(model, m)]
    lines += ["", "    // No class takes the reserved tag."]
    lines += ["    ForeignElement foreign(document.host);",
              "    EXPECT_FALSE(element.HandleTag(TAG_BLOCK, foreign));",
              '    EXPECT_FALSE(element.HandleTChar(TAG_BLOCK, "x"));',
              "    EXPECT_FALSE(element.HandleUInt(TAG_BLOCK, 1u));"]
    filled = []   # (member, check on `element`) kept by a copy
    lines += ["", "    // Every delivered tag reaches its member."]
    for m in members:
        if not m.handler or m.name in blocked:
            continue
        if m.handler == "Tag" and m.kind == "element":
            concrete = model.concrete_of(m.type)
            for t in m.tags:
                lines.append(f"    EXPECT_FALSE(element.HandleTag({tag_enumerator(t)}, foreign));")
            if concrete is None:
                continue
            child_tag = tag_enumerator(m.tags[0])
            lines += [f"    {{",
                      f"        auto& child = document.factory.Make{concrete.stem}(element, {child_tag});",
                      f"        EXPECT_TRUE(element.HandleTag({child_tag}, child));",
                      f"        EXPECT_TRUE(element.Has{m.name}());",
                      f"        EXPECT_EQ(&element.Get{m.name}(), &child);",
                      f"        EXPECT_EQ(child.GetPadLockCount(), 1);",
                      f"    }}"]
            filled.append((m, None))
        elif m.handler == "Tag" and m.kind == "choice" and not hand_tags:
            made = tables.class_for_tag(m.type, m.tags[0], f"{cls.name}.{m.name}", m)
            child_tag = tag_enumerator(m.tags[0])
            lines.append(f"    EXPECT_FALSE(element.HandleTag({child_tag}, foreign));")
            if made.name in model.collections:
                make = f"document.factory.{made.make_name}(element)"
            else:
                make = f"document.factory.Make{made.stem}(element, {child_tag})"
            lines += ["    {",
                      f"        auto& child = {make};",
                      f"        EXPECT_TRUE(element.HandleTag({child_tag}, child));",
                      f"        ASSERT_TRUE(element.Has{m.name}());",
                      f"        EXPECT_EQ(&AsElement(element.Get{m.name}()), &child);",
                      f"        EXPECT_EQ(child.GetPadLockCount(), 1);",
                      "    }"]
            filled.append((m, None))
        elif m.handler == "Tag" and m.kind == "collection":
            coll = model.collections[m.type]
            concrete = model.concrete_of(coll.item)
            if concrete is None:
                continue
            child_tag = tag_enumerator(m.tags[0])
            lines += [f"    {{",
                      f"        auto& item = document.factory.Make{concrete.stem}(element, {child_tag});",
                      f"        EXPECT_TRUE(element.HandleTag({child_tag}, item));",
                      f"        EXPECT_EQ(element.{m.name}().{_count(m)}, 1u);",
                      f"    }}"]
            filled.append((m, None))
        elif m.handler in SAMPLE and m.kind == "collection":
            value, _ = SAMPLE[m.handler]
            for t in m.tags:
                lines.append(f"    EXPECT_TRUE(element.Handle{m.handler}({tag_enumerator(t)}, {value}));")
            lines.append(f"    EXPECT_EQ(element.{m.name}().{_count(m)}, {len(m.tags)}u);")
            if m.optional:
                lines.append(f"    EXPECT_TRUE(element.Has{m.name}());")
            filled.append((m, None))
        elif m.handler in SAMPLE:
            value, check = SAMPLE[m.handler]
            for t in m.tags:
                lines.append(f"    EXPECT_TRUE(element.Handle{m.handler}({tag_enumerator(t)}, {value}));")
            if m.kind == "enum":
                check = f"EXPECT_EQ(static_cast<uint32_t>(element.Get{m.name}()), {value});"
            else:
                check = check.format(name=m.name)
            lines.append("    " + check)
            if m.optional:
                lines.append(f"    EXPECT_TRUE(element.Has{m.name}());")
            filled.append((m, check))
    # Members of hand-written bases (the id link's texts) have tests of their own.
    setters = [(m, _setter_sample(m)) for m in members
               if not m.handler and m.kind in ("scalar", "enum") and m.name not in blocked and not m.exclusive
               and not m.owner.hand]
    setters = [(m, sample) for m, sample in setters if sample is not None]
    if setters:
        lines += ["", "    // Members without a handler take their values through the accessors."]
        for m, (call, check) in setters:
            lines.append(f"    element.{call};")
            lines.append(f"    {check}")
            if m.optional:
                lines.append(f"    EXPECT_TRUE(element.Has{m.name}());")
            filled.append((m, check))
    targets = [m for m in members if m.kind == "target"]
    for m in targets:
        concrete = model.concrete_of(m.type)
        if concrete is None:
            continue
        ttag = tag_enumerator(concrete.tag) if concrete.tag else "TAG_UNSET"
        lines += ["", f"    // The typed target {m.name}: set by the caller, locked by the setter.",
                  f"    auto& target{m.name} = document.factory.Make{concrete.stem}(document.host, {ttag});",
                  f"    document.Adopt(target{m.name});",
                  f'    target{m.name}.SetId("conformance.{m.name}");',
                  f"    element.Set{m.name}(target{m.name});",
                  f"    ASSERT_TRUE(element.Has{m.name}());",
                  f"    EXPECT_EQ(&element.Get{m.name}(), &target{m.name});",
                  "    EXPECT_TRUE(element.HasReferencable());",
                  f"    EXPECT_EQ(target{m.name}.GetPadLockCount(), 1);"]
    lines += ["", "    // A copy holds equal values and children of its own."]
    lines += ["    auto& copy = element.Clone(document.host);", "    document.Adopt(copy);",
              "    EXPECT_EQ(copy.GetOdxTag(), element.GetOdxTag());",
              "    EXPECT_EQ(&copy.GetParent(), &document.host);"]
    for m, check in filled:
        if m.optional or m.kind in ("element", "choice"):
            lines.append(f"    EXPECT_TRUE(copy.Has{m.name}());")
        if m.kind == "element":
            lines += [f"    ASSERT_TRUE(copy.Has{m.name}());",
                      f"    EXPECT_NE(&copy.Get{m.name}(), &element.Get{m.name}());",
                      f"    EXPECT_EQ(&copy.Get{m.name}().GetParent(), &copy);"]
        elif m.kind == "choice":
            lines += [f"    EXPECT_NE(&AsElement(copy.Get{m.name}()), &AsElement(element.Get{m.name}()));"]
        elif m.kind == "collection":
            lines.append(f"    EXPECT_EQ(copy.{m.name}().{_count(m)}, element.{m.name}().{_count(m)});")
        elif check is not None:
            lines.append("    " + check.replace("element.", "copy."))
    for m in targets:
        if model.concrete_of(m.type) is None:
            continue
        lines += [f"    // The copy shares the target and takes no lock on it.",
                  f"    EXPECT_EQ(&copy.Get{m.name}(), &target{m.name});",
                  f"    EXPECT_EQ(target{m.name}.GetPadLockCount(), 1);"]
    lines.append("}")
    pairs = _exclusive_tests(model, cls, members)
    return "\n".join(lines) + ("\n\n" + pairs if pairs else "")


def _exclusive_tests(model, cls, members):
    """Each exclusive pair, both ways: the second setter refuses, its handler says taken."""
    tests = []
    tag = tag_enumerator(cls.tag) if cls.tag else "TAG_UNSET"
    for m in members:
        if not m.exclusive or m.kind != "element":
            continue
        other = next(o for o in members if o.name == m.exclusive)
        concrete = model.concrete_of(m.type)
        if concrete is None or other.handler not in SAMPLE:
            continue
        child_tag = tag_enumerator(m.tags[0])
        value, check = SAMPLE[other.handler]
        other_tag = tag_enumerator(other.tags[0])
        setter = f"Is{other.name}" if other.type == "bool" else f"Set{other.name}"
        lines = [f"TEST(Conformance, {cls.stem}KeepsTheFirstOf{m.name}And{other.name})", "{",
                 "    Document document;",
                 "    {",
                 "        // The element first: the value is refused, by the handler silently.",
                 f"        auto& element = document.factory.Make{cls.stem}(document.host, {tag});",
                 "        document.Adopt(element);",
                 f"        auto& child = document.factory.Make{concrete.stem}(element, {child_tag});",
                 f"        EXPECT_TRUE(element.Set{m.name}(child));",
                 f"        EXPECT_FALSE(element.{setter}({value}));",
                 f"        EXPECT_TRUE(element.Handle{other.handler}({other_tag}, {value}));",
                 f"        EXPECT_FALSE(element.Has{other.name}());",
                 "        // A copy keeps the element and with it the refusal.",
                 "        auto& copy = element.Clone(document.host);",
                 "        document.Adopt(copy);",
                 f"        EXPECT_TRUE(copy.Has{m.name}());",
                 f"        EXPECT_FALSE(copy.{setter}({value}));",
                 "    }",
                 "    {",
                 "        // The value first: the element is refused, and stays the caller's.",
                 f"        auto& element = document.factory.Make{cls.stem}(document.host, {tag});",
                 "        document.Adopt(element);",
                 f"        EXPECT_TRUE(element.{setter}({value}));",
                 f"        auto& child = document.factory.Make{concrete.stem}(element, {child_tag});",
                 "        document.Adopt(child);",
                 f"        EXPECT_FALSE(element.Set{m.name}(child));",
                 f"        EXPECT_TRUE(element.HandleTag({child_tag}, child));",
                 f"        EXPECT_FALSE(element.Has{m.name}());",
                 "        EXPECT_EQ(child.GetPadLockCount(), 0);",
                 "    }",
                 "}"]
        tests.append("\n".join(lines))
    return "\n\n".join(tests)


def _collection_test(model, coll):
    concrete = model.concrete_of(coll.item)
    lines = [f"TEST(Conformance, {coll.stem})", "{", "    Document document;",
             (f"    {coll.name}& collection = document.factory.{coll.make_name}(document.host);" if coll.has_make else
              f"    {coll.name}& collection = *new {coll.name}(document.host, document.root);"),
             "    document.Adopt(collection);",
             "    EXPECT_EQ(collection.GetOdxTag(), TAG_COLLECTION);",
             "    EXPECT_TRUE(collection.IsEmpty());",
             f"    EXPECT_TRUE(EndsWith(collection.GetXPATH(eXPathShortName), \"/{coll.plural}\"));",
             "    ForeignElement foreign(document.host);",
             "    EXPECT_FALSE(collection.HandleTag(TAG_BLOCK, foreign));"]
    if concrete is not None:
        for t in coll.tags:
            e = tag_enumerator(t)
            parent = "PhysicalParentIs(item, collection)" if coll.append == "sets" \
                else "PhysicalParentIs(item, document.host)"
            lines += ["    {",
                      f"        auto& item = document.factory.Make{concrete.stem}(document.host, {e});",
                      f"        EXPECT_FALSE(collection.HandleTag(TAG_BLOCK, item));",
                      f"        EXPECT_TRUE(collection.HandleTag({e}, item));",
                      f"        EXPECT_TRUE({parent});",
                      f"        EXPECT_THROW(collection.HandleTag({e}, foreign), std::bad_cast);",
                      "    }"]
        lines += [f"    auto& copy = collection.Clone(document.host);", "    document.Adopt(copy);",
                  "    EXPECT_EQ(copy.Count(), collection.Count());",
                  "    for (auto& item : copy) {",
                  "        EXPECT_EQ(&AsElement(item).GetParent(), &copy);",
                  "    }"]
    lines.append("}")
    return "\n".join(lines)


def _link_test(model, link):
    tag = tag_enumerator(link.link_tags[0])
    stem, field = link.target_stem, link.target_field
    lines = [f"TEST(Conformance, {link.stem})", "{", "    Document document;",
             f"    {link.name}& element = document.factory.Make{link.stem}(document.host, {tag});",
             "    document.Adopt(element);",
             f"    EXPECT_EQ(element.GetOdxTag(), {tag});", "",
             "    // Without a link object nothing is known.",
             "    EXPECT_FALSE(element.HasLink());",
             '    ExpectAssertion([&] { element.GetLink(); }, "mpLink!= NULL");',
             f"    ExpectAssertion([&] {{ element.Get{stem}(); }}, {cpp_string(field + ' != NULL')});",
             "    ForeignElement foreign(document.host);",
             f"    EXPECT_FALSE(element.HandleTag({tag}, foreign));"]
    target = model.concrete_of(link.target)
    if link.void_has:
        lines.append(f"    EXPECT_FALSE(element.Has{stem}());")
    if link.void_has and target is not None and target.is_referencable():
        target_tag = tag_enumerator(target.tag) if target.tag else "TAG_UNSET"
        lines += ["", "    // An id link resolved by the link set gives its target to the element.",
                  f"    auto& target = document.factory.Make{target.stem}(document.host, {target_tag});",
                  "    document.Adopt(target);",
                  '    target.SetId("conformance.target");',
                  "    auto& link = document.factory.MakeOdxlink(element, TAG_ODXLINK);",
                  '    link.SetIdRef("conformance.target");',
                  "    element.SetLink(link);",
                  "    EXPECT_EQ(link.GetPadLockCount(), 1);",
                  f"    EXPECT_FALSE(element.Has{stem}());",
                  "    document.root.GetOdxLinkSet().ResolveReferences(true);",
                  f"    ASSERT_TRUE(element.Has{stem}());",
                  f"    EXPECT_EQ(&element.Get{stem}(), &target);", "",
                  "    // A copy shares the target and holds a link object of its own.",
                  "    auto& copy = element.Clone(document.host);", "    document.Adopt(copy);",
                  "    ASSERT_TRUE(copy.HasLink());",
                  "    EXPECT_NE(&copy.GetLink(), &element.GetLink());",
                  f"    EXPECT_EQ(&copy.Get{stem}(), &target);"]
    lines.append("}")
    return "\n".join(lines)


def _visitor_test(model, visitor):
    recorder = "Recording" + visitor.name[1:]
    lines = [f"class {recorder} : public {visitor.name} {{", "public:"]
    lines += [f'    void Visit{n[1:]}({n}&) override {{ calls.push_back("{n}"); }}' for n in visitor.visits]
    lines += ["    std::vector<std::string> calls;", "};", "",
              f"TEST(Conformance, {visitor.name[1:]})", "{", "    Document document;"]
    for name in visitor.visits:
        cls = model.classes[name]
        tag = tag_enumerator(cls.tag) if cls.tag else "TAG_UNSET"
        lines += ["    {", f"        {recorder} visitor;",
                  f"        auto& element = document.factory.Make{cls.stem}(document.host, {tag});",
                  "        document.Adopt(element);",
                  f"        visitor.{visitor.dispatch}(element);",
                  f'        EXPECT_EQ(visitor.calls, std::vector<std::string>{{"{name}"}});', "    }"]
    lines.append("}")
    return "\n".join(lines)


def emit_tests(model):
    files = {}
    for subsystem in model.subsystems():
        classes = [c for c in sorted(model.classes.values(), key=lambda c: c.name)
                   if c.subsystem == subsystem and not c.hand and not c.abstract]
        tables = Tables(model)
        tests = [_link_test(model, c) if isinstance(c, LinkClass) else _class_test(model, c, tables)
                 for c in classes]
        tests += [_visitor_test(model, v) for v in sorted(model.visitors.values(), key=lambda v: v.name)
                  if v.subsystem == subsystem]
        tests += [_collection_test(model, c) for c in sorted(model.collections.values(), key=lambda c: c.name)
                  if c.subsystem == subsystem and not c.hand]
        if not tests:
            continue
        text = (BANNER + '#include "ConformanceSupport.h"\n\nnamespace NODX220 {\nnamespace {\n\n' +
                "\n\n".join(tests) + "\n\n} // namespace\n} // namespace NODX220\n")
        files[f"conformance/{subsystem.capitalize()}Conformance.cpp"] = text
    return files
