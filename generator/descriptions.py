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
              "forwards", "content", "doc"}
MEMBER_KEYS = {"name", "type", "optional", "tags", "handler", "default", "assert", "xml", "lazy",
               "copy", "item", "doc"}
# How the text content of a class's element reaches it, where it is not a member of its own.
CONTENTS = {"markup", "date", "bytes"}
HOOKS = {"construct", "copy", "destroy"}
COLLECTION_KEYS = {"item", "tags", "append", "path", "step", "plural", "clone", "hand",
                   "header", "make", "doc"}
LINK_KEYS = {"target", "tags", "void_has", "resolvers", "implements", "doc"}
VISITOR_KEYS = {"family", "visits", "doc"}
CHOICE_KEYS = {"is", "get_as", "clone", "doc"}
ENUM_KEYS = {"literals", "values", "doc", "scope", "hand", "header"}


class DescriptionError(Exception):
    pass


def check_keys(owner, kind, record, allowed):
    """A record names only the keys its kind knows."""
    unknown = set(record) - allowed
    if unknown:
        raise DescriptionError(f"{owner}: unknown {kind} keys {sorted(unknown)}")


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
        # Choice interfaces this class implements, each with the alternative it is.
        self.implements = record.get("implements", [])
        # The order of the members in a document, where it is not the declaration order.
        self.xml_order = record.get("xml_order")
        # markup: free XML nodes (descriptions); date: an ISO date text; bytes: hex text.
        self.content = record.get("content")
        if self.content is not None and self.content not in CONTENTS:
            raise DescriptionError(f"{name}: content is one of {sorted(CONTENTS)}")
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

    def is_referencable(self):
        if "VReferencable" in self.extern_bases:
            return True
        return any(base.is_referencable() for base in self.base_classes)

    def has_concrete_ancestor(self):
        return any(not a.abstract for a in self.ancestors())

    def defines_handler(self, handler):
        """Whether this class itself overrides Handle<handler>."""
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
        bases = ["VOdxElement"] + [entry["interface"] for entry in implements]
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
        if self.append not in ("sets", "leaves"):
            raise DescriptionError(f"{name}: append is 'sets' or 'leaves'")
        if self.path not in ("shortname", "position", "comparam"):
            raise DescriptionError(f"{name}: path is 'shortname', 'position' or 'comparam'")
        self.item_class = None  # resolved ElementClass, or None for an interface

    @property
    def stem(self):
        return self.name[1:]

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
        self.scope = record.get("scope")
        self.hand = record.get("hand", False)
        self.header = record.get("header", f"{subsystem}/{name}.h")
        if len(self.values) != len(self.literals):
            raise DescriptionError(f"{name}: as many values as literals")


class Model:
    def __init__(self, model_dir):
        self.root = pathlib.Path(model_dir)
        self.sources = []
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
        self._resolve()

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
        with path.open("rb") as handle:
            data = tomllib.load(handle)
        unknown = set(data) - {"class", "link", "visitor", "choice", "collection", "enum",
                                 "extern"}
        if unknown:
            raise DescriptionError(f"{path}: unknown sections {sorted(unknown)}")
        for name, record in data.get("extern", {}).items():
            self.externs[name] = record["header"]
        for name, record in data.get("class", {}).items():
            self._add(self.classes, name, ElementClass(subsystem, name, record), path)
        for name, record in data.get("link", {}).items():
            self._add(self.classes, name, LinkClass(subsystem, name, record), path)
        for name, record in data.get("choice", {}).items():
            self._add(self.choices, name, Choice(subsystem, name, record), path)
        for name, record in data.get("visitor", {}).items():
            self._add(self.visitors, name, Visitor(subsystem, name, record), path)
        for name, record in data.get("collection", {}).items():
            self._add(self.collections, name, Collection(subsystem, name, record), path)
        for name, record in data.get("enum", {}).items():
            self._add(self.enums, name, Enum(subsystem, name, record), path)

    def _add(self, table, name, value, path):
        if name in self.classes or name in self.collections or name in self.enums or \
                name in self.visitors or name in self.choices:
            raise DescriptionError(f"{path}: {name} is described twice")
        table[name] = value

    def check_tag(self, where, tag):
        if tag not in self.tag_index:
            raise DescriptionError(f"{where}: {tag} is no tag")

    def _resolve(self):
        for cls in self.classes.values():
            if cls.tag is None and not cls.abstract and schema_name(cls.stem) in self.tag_index:
                cls.tag = schema_name(cls.stem)
            if cls.tag is not None:
                self.check_tag(cls.name, cls.tag)
            for base in cls.bases:
                if base in self.classes:
                    cls.base_classes.append(self.classes[base])
                elif base in self.externs or base in self.choices:
                    cls.extern_bases.append(base)
                else:
                    raise DescriptionError(f"{cls.name}: unknown base {base}")
            for member in cls.members:
                member.kind = self._kind_of(cls, member)
                for tag in member.tags:
                    self.check_tag(f"{cls.name}.{member.name}", tag)
                if member.handler == "Tag" and member.kind not in ("element", "collection", "choice"):
                    raise DescriptionError(f"{cls.name}.{member.name}: Tag handler on a value")
                if member.handler and member.handler != "Tag" and (
                        member.kind == "element" or
                        (member.kind == "collection" and not self.collections[member.type].hand)):
                    raise DescriptionError(f"{cls.name}.{member.name}: value handler on an element")
                if member.handler and not member.tags:
                    raise DescriptionError(f"{cls.name}.{member.name}: a handler needs tags")
        for cls in self.classes.values():
            if cls.xml_order is not None:
                names = {m.name for m in cls.all_members()}
                unknown = set(cls.xml_order) - names
                if unknown:
                    raise DescriptionError(f"{cls.name}: xml_order names no member {sorted(unknown)}")
        for coll in self.collections.values():
            if coll.hand:
                continue
            for tag in coll.tags:
                self.check_tag(coll.name, tag)
            if coll.item in self.classes:
                coll.item_class = self.classes[coll.item]
            elif not coll.item.startswith("I"):
                raise DescriptionError(f"{coll.name}: unknown item class {coll.item}")
        for cls in self.classes.values():
            if isinstance(cls, LinkClass):
                for tag in cls.link_tags:
                    self.check_tag(cls.name, tag)
                if cls.target not in self.classes and not cls.target.startswith("I"):
                    raise DescriptionError(f"{cls.name}: unknown target {cls.target}")
        for cls in self.classes.values():
            for entry in cls.implements:
                choice = self.choices.get(entry.get("interface"))
                if choice is None or set(entry) - {"interface", "as"}:
                    raise DescriptionError(f"{cls.name}: implements names a choice and its alternative")
                if entry.get("as") not in choice.is_names:
                    raise DescriptionError(f"{cls.name}: {entry.get('as')} is no alternative of {choice.name}")
                if choice.name not in cls.bases:
                    raise DescriptionError(f"{cls.name}: {choice.name} must stand among the bases")
        for visitor in self.visitors.values():
            family = self.classes.get(visitor.family)
            if family is None:
                raise DescriptionError(f"{visitor.name}: unknown family {visitor.family}")
            for name in visitor.visits:
                visited = self.classes.get(name)
                if visited is None or visited.abstract:
                    raise DescriptionError(f"{visitor.name}: {name} is no concrete class")
                if visited is not family and family not in visited.ancestors():
                    raise DescriptionError(f"{visitor.name}: {name} is not of {family.name}")
            family.accepts.append(visitor)
            for name in visitor.visits:
                self.classes[name].visited_by.append(visitor)
        self._check_cycles()

    def _kind_of(self, cls, member):
        t = member.type
        if t in SCALARS:
            return "scalar"
        if t in self.enums:
            return "enum"
        if t in self.collections:
            return "collection"
        if t in self.classes:
            return "element"
        if t in self.choices:
            return "choice"
        raise DescriptionError(f"{cls.name}.{member.name}: unknown type {t}")

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
            return self.enums[name].header
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
