"""Loads the model descriptions (one TOML file per subsystem folder) and checks them.

The result is a `Model`: tags, enums, element classes and collections, each knowing the
subsystem it belongs to and the header that declares it.
"""

import pathlib
import re
import tomllib

SCALARS = {
    "text": "VYAString",
    "bool": "bool",
    "u8": "uint8_t",
    "u32": "uint32_t",
    "i32": "int32_t",
    "f64": "double",
}

HANDLERS = {"Tag", "TChar", "Bool", "Int", "UInt", "Double", "Byte"}

# What a handler delivers, and the member types it may fill.
HANDLER_VALUE = {
    "TChar": "const char*",
    "Bool": "bool",
    "Int": "int32_t",
    "UInt": "uint32_t",
    "Double": "double",
    "Byte": "uint8_t",
}

CLASS_KEYS = {"bases", "abstract", "hand", "header", "clone_as", "hooks", "departures",
              "fields", "members", "tag", "implements", "xml_order", "protected", "includes",
              "forwards", "content", "doc", "virtual", "xml_tag", "transparent", "hand_handlers",
              "text_ids"}
MEMBER_KEYS = {"name", "type", "optional", "tags", "handler", "default", "assert", "xml", "lazy",
               "copy", "item", "doc", "target", "exclusive", "names", "make"}
# How the text content of a class's element reaches it, where it is not a member of its own.
CONTENTS = {"markup", "date", "bytes"}
HOOKS = {"construct", "copy", "destroy"}
COLLECTION_KEYS = {"item", "tags", "append", "path", "step", "plural", "clone", "hand",
                   "header", "make", "doc", "base", "implements"}
LINK_KEYS = {"target", "tags", "void_has", "resolvers", "implements", "doc"}
VISITOR_KEYS = {"family", "visits", "doc"}
CHOICE_KEYS = {"is", "get_as", "clone", "doc"}
ENUM_KEYS = {"literals", "values", "doc", "hand", "header"}


class DescriptionError(Exception):
    pass


def check_keys(owner, kind, record, allowed):
    """A record names only the keys its kind knows."""
    unknown = set(record) - allowed
    if unknown:
        raise DescriptionError(f"{owner}: unknown {kind} keys {sorted(unknown)}")


def normalise_implements(owner, entries):
    """Each entry as { interface, as: [alternatives], forward: bool }."""
    result = []
    for entry in entries:
        if not isinstance(entry, dict) or set(entry) - {"interface", "as", "forward"} or \
                "interface" not in entry or "as" not in entry:
            raise DescriptionError(f"{owner}: implements names a choice and its alternatives")
        names = entry["as"] if isinstance(entry["as"], list) else [entry["as"]]
        result.append({"interface": entry["interface"], "as": names,
                       "forward": entry.get("forward", False)})
    return result


def tag_enumerator(text):
    """TAG_ followed by the tag text in upper case, '-' turned into '_'."""
    return "TAG_" + text.upper().replace("-", "_")


def schema_name(stem):
    """DiagLayerContainer -> DIAG-LAYER-CONTAINER."""
    return re.sub(r"(?<=[a-z0-9])(?=[A-Z])", "-", stem).upper()


def lower_first(name):
    return name[:1].lower() + name[1:]


class Member:
    def __init__(self, owner, record):
        check_keys(owner.name, "member", record, MEMBER_KEYS)
        self.owner = owner
        self.name = record["name"]
        self.type = record["type"]
        self.optional = record.get("optional", False)
        self.tags = record.get("tags", [])
        self.handler = record.get("handler", "")
        self.default = record.get("default")
        self.assert_text = record.get("assert")
        self.xml = record.get("xml")
        # A lazy text is a string made on first Set; Has tells whether it exists.
        self.lazy = record.get("lazy", False)
        # "nonempty": a copy takes the text only when it is not empty.
        self.copy = record.get("copy", "always")
        # The XML name of the items of a text collection inside its wrapper.
        self.item = record.get("item")
        self.doc = record.get("doc", "")
        # The typed target of a link-like class: a raw pointer with its own lock rules.
        self.target = record.get("target", False)
        # The member that this one excludes, first come first served.
        self.exclusive = record.get("exclusive")
        # XML names delivered under another tag: { XML-NAME: TAG }.
        self.names = record.get("names", {})
        # The class the reader makes for a tag: { TAG: CLASS }.
        self.make = record.get("make", {})
        # A collection spread over several wrappers: { WRAPPER: [item tags] }.
        self.wrappers = self.xml if isinstance(self.xml, dict) else None
        if self.lazy and self.type != "text":
            raise DescriptionError(f"{owner.name}.{self.name}: only texts are lazy")
        if self.handler and self.handler not in HANDLERS:
            raise DescriptionError(f"{owner.name}.{self.name}: unknown handler {self.handler}")
        self.kind = None  # set by Model.resolve: scalar, enum, element, collection, choice

    @property
    def field(self):
        return "mp" + self.name if self.kind == "choice" or self.lazy else "m" + self.name

    @property
    def has_flag(self):
        return "mHas" + self.name

    @property
    def param(self):
        return lower_first(self.name)


class ElementClass:
    def __init__(self, subsystem, name, record):
        check_keys(name, "class", record, CLASS_KEYS)
        self.subsystem = subsystem
        self.name = name
        self.bases = record.get("bases", ["VOdxElement"])
        self.abstract = record.get("abstract", False)
        self.hand = record.get("hand", False)
        self.header = record.get("header", f"{subsystem}/{name}.h")
        self.clone_as = record.get("clone_as")
        # Hand-written steps: "construct" runs at the end of both constructors, "copy" at the
        # end of the copy constructor (with the source), "destroy" first in the destructor.
        self.hooks = record.get("hooks", [])
        if set(self.hooks) - HOOKS:
            raise DescriptionError(f"{name}: hooks are {sorted(HOOKS)}")
        # Hand-declared private fields, kept verbatim (with their initialisers).
        self.fields = record.get("fields", [])
        # The element tag the class stands for; derived from the name where the name says it.
        self.tag = record.get("tag")
        self.departures = record.get("departures", [])
        # Hand-written protected declarations, and what the hand-written parts need declared.
        self.protected = record.get("protected", [])
        self.includes = record.get("includes", [])
        self.forwards = record.get("forwards", [])
        self.doc = record.get("doc", "")
        self.members = [Member(self, m) for m in record.get("members", [])]
        # Choice interfaces this class implements, each with the alternatives it answers for.
        self.implements = normalise_implements(name, record.get("implements", []))
        # The order of the members in a document, where it is not the declaration order.
        self.xml_order = record.get("xml_order")
        # markup: free XML nodes (descriptions); date: an ISO date text; bytes: hex text.
        self.content = record.get("content")
        if self.content is not None and self.content not in CONTENTS:
            raise DescriptionError(f"{name}: content is one of {sorted(CONTENTS)}")
        # Whether the accessors are virtual; by default those of abstract classes are.
        self.virtual = record.get("virtual", self.abstract)
        # The fixed name that GetXmlTag gives for this class and its descendants.
        self.xml_tag = record.get("xml_tag")
        # No XML element of its own: its members stand in the element that holds it.
        self.transparent = record.get("transparent", False)
        # The element stands in its document's set of text carriers for its whole life.
        self.text_ids = record.get("text_ids", False)
        # Handle operations declared by the generator and written by hand.
        self.hand_handlers = record.get("hand_handlers", [])
        if set(self.hand_handlers) - HANDLERS:
            raise DescriptionError(f"{name}: hand_handlers are among {sorted(HANDLERS)}")
        self.accepts = []  # visitors whose family this class heads
        self.visited_by = []  # visitors with a Visit operation for this class
        self.base_classes = []  # resolved element-class bases, in order
        self.extern_bases = []  # names of hand-written non-element bases

    @property
    def stem(self):
        return self.name[1:]

    @property
    def element_base(self):
        return self.base_classes[0] if self.base_classes else None

    def ancestors(self):
        """All described element-class ancestors, nearest first."""
        result = []
        for base in self.base_classes:
            result.append(base)
            result.extend(base.ancestors())
        return result

    def all_members(self):
        """Members of the described ancestors first (deepest base first), then its own."""
        result = []
        for base in self.base_classes:
            result.extend(base.all_members())
        return result + self.members

    def fixed_xml_tag(self):
        """The name GetXmlTag gives, where this class or an ancestor fixes it."""
        for cls in [self] + self.ancestors():
            if cls.xml_tag:
                return cls.xml_tag
        return None

    def is_link_like(self):
        """Whether the element is itself an id link (derives from VOdxlink)."""
        return any(c.name == "VOdxlink" for c in [self] + self.ancestors())

    def is_referencable(self):
        if "VReferencable" in self.extern_bases:
            return True
        return any(base.is_referencable() for base in self.base_classes)

    def has_concrete_ancestor(self):
        return any(not a.abstract for a in self.ancestors())

    def defines_handler(self, handler):
        """Whether this class itself overrides Handle<handler>."""
        if handler in self.hand_handlers:
            return True
        if self.hand:
            return any(m.handler == handler for m in self.members)
        if handler == "Tag" and not self.abstract and not self.inherits_handler("Tag"):
            return True
        return any(m.handler == handler for m in self.members)

    def inherits_handler(self, handler):
        """Whether a described ancestor overrides Handle<handler>."""
        return any(a.defines_handler(handler) for a in self.ancestors())


class LinkClass(ElementClass):
    """A typed link element: a parent's reference to a target of one class, holding the
    ILink object (VOdxlink, VSnref or VSnpathref) and caching the target once known."""

    def __init__(self, subsystem, name, record):
        check_keys(name, "link", record, LINK_KEYS)
        implements = record.get("implements", [])
        bases = ["VOdxElement"] + [entry.get("interface") for entry in implements]
        super().__init__(subsystem, name, {"bases": bases, "implements": implements,
                                           "doc": record.get("doc", "")})
        self.target = record["target"]
        self.tag = record.get("tags", [None])[0]
        self.link_tags = record.get("tags", [])
        self.void_has = record.get("void_has", True)
        self.resolvers = record.get("resolvers", [])
        for resolver in self.resolvers:
            if set(resolver) != {"call", "context"}:
                raise DescriptionError(f"{name}: a resolver has call and context")

    @property
    def target_stem(self):
        return self.target[1:]

    @property
    def target_field(self):
        return "mp" + self.target_stem


class Choice:
    """A choice interface: a narrow typed view on a place that holds one of a few kinds."""

    def __init__(self, subsystem, name, record):
        check_keys(name, "choice", record, CHOICE_KEYS)
        self.subsystem = subsystem
        self.name = name
        self.is_names = record.get("is", [])
        self.get_as = record.get("get_as", {})
        self.clones = record.get("clone", [])
        self.doc = record.get("doc", "")
        self.header = f"{subsystem}/{name}.h"
        if not self.clones:
            raise DescriptionError(f"{name}: a choice names its clone operation")


class Visitor:
    def __init__(self, subsystem, name, record):
        check_keys(name, "visitor", record, VISITOR_KEYS)
        if not name.endswith("Visitor"):
            raise DescriptionError(f"{name}: a visitor's name ends in Visitor")
        self.subsystem = subsystem
        self.name = name
        self.family = record["family"]
        self.visits = record.get("visits", [])
        self.doc = record.get("doc", "")
        self.header = f"{subsystem}/{name}.h"

    @property
    def dispatch(self):
        return "Dispatch" + self.family[1:]


class Collection:
    def __init__(self, subsystem, name, record):
        check_keys(name, "collection", record, COLLECTION_KEYS)
        if not name.endswith("Collection"):
            raise DescriptionError(f"{name}: a collection's name ends in Collection")
        self.subsystem = subsystem
        self.name = name
        stem = name[1:-len("Collection")]
        self.item = record.get("item", "V" + stem)
        self.tags = record.get("tags", [schema_name(self.item[1:])])
        self.append = record.get("append", "sets")
        self.path = record.get("path", "shortname")
        self.step = record.get("step")
        self.plural = record.get("plural", schema_name(self.item[1:]) + "S")
        self.clone = record.get("clone")
        self.hand = record.get("hand", False)
        self.header = record.get("header", f"{subsystem}/{name}.h")
        self.make = record.get("make")
        self.doc = record.get("doc", "")
        # A collection derived from another, and the choices it is an alternative of.
        self.base = record.get("base")
        self.implements = normalise_implements(name, record.get("implements", []))
        self.base_collection = None
        if self.append not in ("sets", "leaves"):
            raise DescriptionError(f"{name}: append is 'sets' or 'leaves'")
        if self.path not in ("shortname", "position", "comparam"):
            raise DescriptionError(f"{name}: path is 'shortname', 'position' or 'comparam'")
        self.item_class = None  # resolved ElementClass, or None for an interface

    @property
    def stem(self):
        return self.name[1:]

    @property
    def has_make(self):
        """Whether the factory offers a make operation; make = "" says it does not."""
        return self.make != ""

    @property
    def make_name(self):
        return self.make or "Make" + self.stem


class Enum:
    def __init__(self, subsystem, name, record):
        check_keys(name, "enum", record, ENUM_KEYS)
        self.subsystem = subsystem
        self.name = name
        self.literals = record.get("literals", [])
        self.values = record.get("values", list(range(len(self.literals))))
        self.doc = record.get("doc", "")
        self.hand = record.get("hand", False)
        # "VOwner::VName" is declared inside the class VOwner.
        self.owner, _, short = name.rpartition("::")
        self.short_name = short
        self.header = record.get("header", f"{subsystem}/{short}.h")
        if len(self.values) != len(self.literals):
            raise DescriptionError(f"{name}: as many values as literals")


class Model:
    """All descriptions, resolved. Every error found is reported, not just the first, so that
    one broken record does not hide the state of the others."""

    def __init__(self, model_dir):
        self.root = pathlib.Path(model_dir)
        self.sources = []
        self.errors = []
        self.tags = self._load_tags(self.root / "framework" / "tags.txt")
        self.tag_index = {t: i for i, t in enumerate(self.tags)}
        self.classes = {}
        self.visitors = {}
        self.choices = {}
        self.collections = {}
        self.enums = {}
        self.externs = {}
        for path in sorted(self.root.glob("*/*.toml")):
            self._load(path)
        if not self.errors:
            self._resolve()
        if self.errors:
            raise DescriptionError("\n".join(self.errors))

    def error(self, text):
        self.errors.append(text)

    @staticmethod
    def _load_tags(path):
        tags = [line.strip() for line in path.read_text().splitlines()
                if line.strip() and not line.startswith("#")]
        key = [t.lower().replace("-", "") for t in tags]
        if key != sorted(key):
            raise DescriptionError("tags.txt is not in its sort order")
        names = [tag_enumerator(t) for t in tags]
        if len(set(names)) != len(names):
            raise DescriptionError("two tags give the same enumerator")
        return tags

    def _load(self, path):
        self.sources.append(path)
        subsystem = path.parent.name
        try:
            with path.open("rb") as handle:
                data = tomllib.load(handle)
        except tomllib.TOMLDecodeError as error:
            self.error(f"{path}: {error}")
            return
        unknown = set(data) - {"class", "link", "visitor", "choice", "collection", "enum",
                                 "extern"}
        if unknown:
            self.error(f"{path}: unknown sections {sorted(unknown)}")
        for name, record in data.get("extern", {}).items():
            self.externs[name] = record["header"]
        kinds = [("class", self.classes, ElementClass), ("link", self.classes, LinkClass),
                 ("choice", self.choices, Choice), ("visitor", self.visitors, Visitor),
                 ("collection", self.collections, Collection), ("enum", self.enums, Enum)]
        for section, table, make in kinds:
            for name, record in data.get(section, {}).items():
                try:
                    self._add(table, name, make(subsystem, name, record), path)
                except DescriptionError as error:
                    self.error(f"{path.name}: {error}")
                except (KeyError, TypeError, AttributeError) as error:
                    self.error(f"{path.name}: {name}: malformed record ({error!r})")

    def _add(self, table, name, value, path):
        if name in self.classes or name in self.collections or name in self.enums or \
                name in self.visitors or name in self.choices:
            raise DescriptionError(f"{name} is described twice")
        table[name] = value

    def check_tag(self, where, tag):
        if tag not in self.tag_index:
            self.error(f"{where}: {tag} is no tag")
            return False
        return True

    def _resolve(self):
        for enum in self.enums.values():
            if enum.owner and enum.owner not in self.classes:
                self.error(f"{enum.name}: unknown owner class {enum.owner}")
        for cls in self.classes.values():
            self._resolve_class(cls)
        for coll in self.collections.values():
            self._resolve_collection(coll)
        for cls in self.classes.values():
            if cls.xml_order is not None:
                names = {m.name for m in cls.all_members()}
                names |= {w for m in cls.all_members() if m.wrappers for w in m.wrappers}
                unknown = set(cls.xml_order) - names
                if unknown:
                    self.error(f"{cls.name}: xml_order names no member {sorted(unknown)}")
            if isinstance(cls, LinkClass):
                for tag in cls.link_tags:
                    self.check_tag(cls.name, tag)
                if cls.target not in self.classes and cls.target not in self.choices:
                    self.error(f"{cls.name}: unknown target {cls.target}")
            self._check_implements(cls.name, cls.implements, cls.bases)
        for visitor in self.visitors.values():
            family = self.classes.get(visitor.family)
            if family is None:
                self.error(f"{visitor.name}: unknown family {visitor.family}")
                continue
            for name in visitor.visits:
                visited = self.classes.get(name)
                if visited is None or visited.abstract:
                    self.error(f"{visitor.name}: {name} is no concrete class")
                    continue
                if visited is not family and family not in visited.ancestors():
                    self.error(f"{visitor.name}: {name} is not of {family.name}")
            family.accepts.append(visitor)
            for name in visitor.visits:
                if name in self.classes:
                    self.classes[name].visited_by.append(visitor)
        if not self.errors:
            self._check_cycles()

    def _resolve_class(self, cls):
        if cls.tag is None and not cls.abstract and schema_name(cls.stem) in self.tag_index:
            cls.tag = schema_name(cls.stem)
        if cls.tag is not None:
            self.check_tag(cls.name, cls.tag)
        elif not cls.abstract and not cls.hand:
            self.error(f"{cls.name}: a concrete class needs a tag")
        for base in cls.bases:
            if base in self.classes:
                cls.base_classes.append(self.classes[base])
            elif base in self.externs or base in self.choices:
                cls.extern_bases.append(base)
            else:
                self.error(f"{cls.name}: unknown base {base}")
        names = [m.name for m in cls.members]
        for name in {n for n in names if names.count(n) > 1}:
            self.error(f"{cls.name}: two members are named {name}")
        for member in cls.members:
            where = f"{cls.name}.{member.name}"
            member.kind = self._kind_of(cls, member)
            if member.kind is None:
                continue
            for tag in member.tags:
                self.check_tag(where, tag)
            if member.handler == "Tag" and member.kind not in ("element", "collection", "choice"):
                self.error(f"{where}: Tag handler on a value")
            if member.handler and member.handler != "Tag" and (
                    member.kind in ("element", "target") or
                    (member.kind == "collection" and not self.collections[member.type].hand)):
                self.error(f"{where}: value handler on an element")
            if member.handler and not member.tags:
                self.error(f"{where}: a handler needs tags")
            if member.target and (member.tags or member.handler):
                self.error(f"{where}: a target has no tag and no handler")
            if member.wrappers is not None:
                if member.kind != "collection":
                    self.error(f"{where}: only a collection spreads over wrappers")
                else:
                    for wrapper, tags in member.wrappers.items():
                        if not set(tags) <= set(self.collections[member.type].tags):
                            self.error(f"{where}: {wrapper} names tags the collection does not take")
            for xml_name, tag in member.names.items():
                self.check_tag(f"{where} names {xml_name}", tag)
            for tag, made in member.make.items():
                if made not in self.classes:
                    self.error(f"{where}: make names no class {made}")
                if tag not in member.tags:
                    self.error(f"{where}: make names a tag the member does not take ({tag})")
            if member.exclusive is not None:
                other = next((m for m in cls.members if m.name == member.exclusive), None)
                if other is None or other.exclusive != member.name:
                    self.error(f"{where}: exclusive names no member that excludes it in turn")
        if any(m.target for m in cls.members) and not cls.is_link_like():
            self.error(f"{cls.name}: only classes derived from VOdxlink have a target member")

    def _resolve_collection(self, coll):
        if coll.base is not None:
            coll.base_collection = self.collections.get(coll.base)
            if coll.base_collection is None:
                self.error(f"{coll.name}: unknown base collection {coll.base}")
        if coll.hand:
            return
        for tag in coll.tags:
            self.check_tag(coll.name, tag)
        if coll.item in self.classes:
            coll.item_class = self.classes[coll.item]
        elif coll.item not in self.choices:
            self.error(f"{coll.name}: unknown item class {coll.item}")
        self._check_implements(coll.name, coll.implements, [e["interface"] for e in coll.implements])

    def _check_implements(self, owner, entries, bases):
        for entry in entries:
            choice = self.choices.get(entry["interface"])
            if choice is None:
                self.error(f"{owner}: implements unknown choice {entry['interface']}")
                continue
            for alternative in entry["as"]:
                if alternative not in choice.is_names:
                    self.error(f"{owner}: {alternative} is no alternative of {choice.name}")
            if choice.name not in bases:
                self.error(f"{owner}: {choice.name} must stand among the bases")

    def _kind_of(self, cls, member):
        t = member.type
        if t in SCALARS:
            return "scalar"
        if t in self.enums:
            return "enum"
        if t in self.collections:
            return "collection"
        if t in self.classes:
            return "element" if not member.target else "target"
        if t in self.choices:
            return "choice" if not member.target else "target"
        self.error(f"{cls.name}.{member.name}: unknown type {t}")
        return None

    def _check_cycles(self):
        seen = set()

        def visit(cls, chain):
            if cls.name in chain:
                raise DescriptionError("inheritance cycle: " + " -> ".join(chain + [cls.name]))
            if cls.name in seen:
                return
            for base in cls.base_classes:
                visit(base, chain + [cls.name])
            seen.add(cls.name)

        for cls in self.classes.values():
            visit(cls, [])

    def header_of(self, name):
        if name in self.choices:
            return self.choices[name].header
        if name in self.visitors:
            return self.visitors[name].header
        if name in self.classes:
            return self.classes[name].header
        if name in self.collections:
            return self.collections[name].header
        if name in self.enums:
            enum = self.enums[name]
            if enum.owner:
                return self.classes[enum.owner].header if enum.owner in self.classes else None
            return enum.header
        if name in self.externs:
            return self.externs[name]
        return None

    def subsystems(self):
        names = {c.subsystem for c in self.classes.values()}
        names |= {c.subsystem for c in self.collections.values()}
        names |= {e.subsystem for e in self.enums.values()}
        return sorted(names)

    def concrete_of(self, class_name):
        """The class itself if concrete, else its first concrete descendant; None if none."""
        cls = self.classes.get(class_name)
        if cls is None:
            return None
        if not cls.abstract:
            return cls
        for candidate in sorted(self.classes.values(), key=lambda c: c.name):
            if not candidate.abstract and cls in candidate.ancestors():
                return candidate
        return None

    def clone_operation(self, class_name):
        """The operation that deep-copies an object of this static type."""
        if class_name in self.choices:
            first = self.choices[class_name].clones[0]
            return first if isinstance(first, str) else first[0]
        cls = self.classes.get(class_name)
        if cls is not None and cls.abstract and cls.clone_as:
            return cls.clone_as
        return "Clone"
