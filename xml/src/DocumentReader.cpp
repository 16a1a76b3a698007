#include "DocumentReader.h"

#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <typeinfo>

#include "TableSupport.h"
#include "Unheld.h"

namespace NODX220Xml {
namespace Internal {

using namespace NODX220;

namespace {

// No real document nests a tenth as deep; deeper trees would be too deep to end or walk.
const size_t kMaxDepth = 256;

bool IsBlank(const std::string& text)
{
    return text.find_first_not_of(" \t\r\n") == std::string::npos;
}

bool ParseInteger(const char* text, long long minimum, long long maximum, long long& value)
{
    while (*text == ' ' || *text == '\t' || *text == '\n' || *text == '\r') {
        ++text;
    }
    if (*text == '\0') {
        return false;
    }
    char* end = nullptr;
    errno = 0;
    value = std::strtoll(text, &end, 10);
    while (*end == ' ' || *end == '\t' || *end == '\n' || *end == '\r') {
        ++end;
    }
    return errno == 0 && *end == '\0' && value >= minimum && value <= maximum;
}

bool ParseDouble(const char* text, double& value)
{
    char* end = nullptr;
    errno = 0;
    value = std::strtod(text, &end);
    if (end == text) {
        return false;
    }
    while (*end == ' ' || *end == '\t' || *end == '\n' || *end == '\r') {
        ++end;
    }
    return *end == '\0';
}

bool ParseBool(const std::string& text, long long& value)
{
    const size_t first = text.find_first_not_of(" \t\r\n");
    const size_t last = text.find_last_not_of(" \t\r\n");
    const std::string word = first == std::string::npos ? "" : text.substr(first, last - first + 1);
    if (word == "true" || word == "1") {
        value = 1;
        return true;
    }
    if (word == "false" || word == "0") {
        value = 0;
        return true;
    }
    return false;
}

// Converts a text to the number a value of this kind holds; false when it is none.
bool Convert(ValueKind kind, const EnumLiterals* literals, const std::string& text, long long& number)
{
    switch (kind) {
    case ValueKind::Text:
        number = 0;
        return true;
    case ValueKind::UInt:
        return ParseInteger(text.c_str(), 0, 0xFFFFFFFFll, number);
    case ValueKind::Int:
        return ParseInteger(text.c_str(), -0x80000000ll, 0x7FFFFFFFll, number);
    case ValueKind::Byte:
        return ParseInteger(text.c_str(), 0, 255, number);
    case ValueKind::Double: {
        double value = 0.0;
        number = 0;
        return ParseDouble(text.c_str(), value);
    }
    case ValueKind::Bool:
        return ParseBool(text, number);
    case ValueKind::Enum: {
        // The schema collapses whitespace around a literal.
        const size_t first = text.find_first_not_of(" \t\r\n");
        const std::string word =
            first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
        int value = 0;
        if (literals == nullptr || !EnumValue(*literals, word.c_str(), value)) {
            return false;
        }
        number = value;
        return true;
    }
    }
    return false;
}

const char* KindName(ValueKind kind)
{
    switch (kind) {
    case ValueKind::UInt:
        return "an unsigned number";
    case ValueKind::Int:
        return "a number";
    case ValueKind::Byte:
        return "a number from 0 to 255";
    case ValueKind::Double:
        return "a floating-point number";
    case ValueKind::Bool:
        return "true or false";
    default:
        return "a value";
    }
}

bool HasDateAndTime(const std::string& text)
{
    unsigned short fields[6];
    return std::sscanf(text.c_str(), "%hu-%hu-%huT%hu:%hu:%hu", &fields[0], &fields[1], &fields[2],
                       &fields[3], &fields[4], &fields[5]) == 6;
}

bool ParseHex(const std::string& text, std::vector<unsigned char>& bytes)
{
    std::string digits;
    for (char c : text) {
        if (c == ' ' || c == '\t' || c == '\r' || c == '\n') {
            continue;
        }
        if (!std::isxdigit(static_cast<unsigned char>(c))) {
            return false;
        }
        digits += c;
    }
    if (digits.size() % 2 != 0) {
        digits.insert(digits.begin(), '0');
    }
    bytes.clear();
    for (size_t i = 0; i < digits.size(); i += 2) {
        bytes.push_back(static_cast<unsigned char>(std::strtoul(digits.substr(i, 2).c_str(), nullptr, 16)));
    }
    return true;
}

} // namespace

DocumentReader::DocumentReader(LoadState& state, const std::string& location, const std::string& fileName)
    : mState(state), mLocation(location), mFileName(fileName), mTokenizer(*this, location)
{
}

DocumentReader::~DocumentReader()
{
    // A document not read to its end leaves nothing behind.
    if (!mFinished && !mFailed) {
        _Discard();
    }
}

bool DocumentReader::Feed(const char* data, size_t size)
{
    if (mFailed) {
        return false;
    }
    if (!mTokenizer.Feed(data, size) && !mFailed) {
        _Fail(mTokenizer.Error(), mTokenizer.ErrorLine(), mTokenizer.ErrorColumn());
    }
    return !mFailed;
}

bool DocumentReader::Finish()
{
    if (mFailed) {
        return false;
    }
    if (!mTokenizer.Finish() && !mFailed) {
        _Fail(mTokenizer.Error(), mTokenizer.ErrorLine(), mTokenizer.ErrorColumn());
    }
    if (!mFailed && !mSawRoot) {
        _Fail("the document is empty", 0, 0);
    }
    mFinished = !mFailed;
    return mFinished;
}

void DocumentReader::StartElement(const char* name, const XmlAttribute* attributes, size_t count)
{
    if (mFailed) {
        return;
    }
    if (mFrames.empty()) {
        _StartRoot(name, attributes, count);
        return;
    }
    Frame& top = mFrames.back();
    if (mFrames.size() >= kMaxDepth && top.kind != FrameKind::Skip) {
        _Fail("the document nests deeper than " + std::to_string(kMaxDepth) + " elements",
              mTokenizer.StartLine(), mTokenizer.StartColumn());
        return;
    }
    switch (top.kind) {
    case FrameKind::Skip:
        ++top.depth;
        return;
    case FrameKind::TextChild:
        _Skip(name, attributes, count);
        return;
    case FrameKind::Markup:
        _StartMarkup(name, attributes, count);
        return;
    case FrameKind::Wrapper:
        if (const ChildRule* rule = _Rule(top.collection->items, top.collection->itemCount, name, attributes,
                                          count)) {
            _StartChild(top, rule, name, attributes, count);
        } else {
            _Skip(name, attributes, count);
        }
        return;
    case FrameKind::Root:
    case FrameKind::Element:
        if (const ChildRule* rule = _Rule(top.table->children, top.table->childCount, name, attributes, count)) {
            _StartChild(top, rule, name, attributes, count);
        } else if (top.table->content == Content::Markup) {
            _StartMarkup(name, attributes, count);
        } else {
            _Skip(name, attributes, count);
        }
        return;
    }
}

const ChildRule* DocumentReader::_Rule(const ChildRule* rules, uint16_t ruleCount, const char* name,
                                       const XmlAttribute* attributes, size_t count)
{
    // xsi:type names the concrete kind: PARAM xsi:type="CODED-CONST" is read as CODED-CONST.
    for (size_t i = 0; i < count; ++i) {
        if (std::strcmp(attributes[i].name, "xsi:type") == 0) {
            if (const ChildRule* rule = FindChild(rules, ruleCount, attributes[i].value)) {
                return rule;
            }
            break;
        }
    }
    return FindChild(rules, ruleCount, name);
}

void DocumentReader::_StartRoot(const char* name, const XmlAttribute* attributes, size_t count)
{
    if (std::strcmp(name, "ODX") != 0) {
        _Fail(std::string("the root element is ") + name + ", not ODX", mTokenizer.StartLine(), mTokenizer.StartColumn());
        return;
    }
    mSawRoot = true;
    Frame frame;
    frame.kind = FrameKind::Root;
    frame.element = &mState.root;
    frame.table = &RootTable();
    frame.line = mTokenizer.StartLine();
    frame.column = mTokenizer.StartColumn();
    frame.name = "ODX";
    frame.position = 1;
    for (size_t i = 0; i < count; ++i) {
        if (std::strcmp(attributes[i].name, "xsi:noNamespaceSchemaLocation") == 0) {
            mState.root.SetSchemaLocation(attributes[i].value);
        }
    }
    _ApplyAttributes(mState.root, *frame.table, attributes, count, name, frame);
    mFrames.push_back(std::move(frame));
}

void DocumentReader::_StartChild(Frame& parent, const ChildRule* rule, const char* name,
                                 const XmlAttribute* attributes, size_t count)
{
    Frame frame;
    frame.rule = rule;
    frame.line = mTokenizer.StartLine();
    frame.column = mTokenizer.StartColumn();
    _Place(frame, name);
    // Inside a wrapper the items belong to the wrapper's owner and go to its collection.
    VOdxElement& owner = *parent.element;
    VOdxElement* receiver = parent.kind == FrameKind::Wrapper ? parent.owner : parent.element;

    switch (rule->kind) {
    case ChildKind::Text:
        frame.kind = FrameKind::TextChild;
        frame.element = &owner;
        if (count > 0) {
            _Report(eSeverityWarning, std::string("attributes of ") + name + " are not read",
                    _Path(mFrames.size(), &frame), frame.line, frame.column);
            ++mState.unhandled;
        }
        mFrames.push_back(std::move(frame));
        return;
    case ChildKind::Wrapper:
        frame.kind = FrameKind::Wrapper;
        frame.owner = &owner;
        frame.element = &rule->collectionOf(owner);
        frame.collection = rule->collection;
        mFrames.push_back(std::move(frame));
        return;
    case ChildKind::Element:
    case ChildKind::Reference:
        break;
    }

    frame.kind = FrameKind::Element;
    frame.owner = parent.kind == FrameKind::Wrapper ? parent.element : &owner;
    frame.maker = receiver;
    frame.table = rule->table;
    if (rule->table->content == Content::Bytes) {
        // Bytes are given to the element when it is made, at the end of its text.
        frame.element = nullptr;
        mFrames.push_back(std::move(frame));
        return;
    }
    VOdxElement& child = rule->make(*receiver, rule->tag);
    frame.element = &child;
    if (rule->kind == ChildKind::Reference) {
        VOdxFactory& factory = VOdxFactory::Instance();
        ILink* link = nullptr;
        VOdxElement* linkElement = nullptr;
        switch (rule->link) {
        case LinkForm::Odxlink: {
            VOdxlink& odxlink = factory.MakeOdxlink(child, TAG_ODXLINK);
            mState.linkOrigins[&odxlink] = {mLocation, frame.line, frame.column};
            link = &odxlink;
            linkElement = &odxlink;
            break;
        }
        case LinkForm::Snref: {
            VSnref& snref = factory.MakeSnref(child, TAG_SNREF);
            link = &snref;
            linkElement = &snref;
            break;
        }
        case LinkForm::Snpathref: {
            VSnpathref& snpathref = factory.MakeSnpathref(child, TAG_SHORT_NAME_PATH);
            link = &snpathref;
            linkElement = &snpathref;
            break;
        }
        }
        rule->setLink(child, *link);
        _ApplyAttributes(*linkElement, *rule->table, attributes, count, name, frame);
        // The reference element itself takes no children: a table without any.
        static const ClassTable kNoChildren = {"reference", nullptr, 0,     nullptr, 0,     Content::None, TAG_UNSET,
                                               false,       nullptr, 0,     nullptr, false, false,         nullptr};
        frame.table = &kNoChildren;
    } else {
        // An element that is itself an id link is reported by its place when it finds no target.
        if (auto* odxlink = dynamic_cast<VOdxlink*>(&child)) {
            mState.linkOrigins[odxlink] = {mLocation, frame.line, frame.column};
        }
        _ApplyAttributes(child, *rule->table, attributes, count, name, frame);
    }
    if (parent.kind == FrameKind::Root) {
        if (auto* category = dynamic_cast<VOdxCategory*>(&child)) {
            category->SetFileName(mFileName.c_str());
        }
    }
    _AttachPending(child);
    mFrames.push_back(std::move(frame));
}

void DocumentReader::_StartMarkup(const char* name, const XmlAttribute* attributes, size_t count)
{
    _FlushMarkupText();
    Frame& top = mFrames.back();
    VSimpleXmlElement& node = VOdxFactory::Instance().MakeSimpleXmlElement(name);
    for (size_t i = 0; i < count; ++i) {
        node.SetAttribute(VYAString(attributes[i].name), VYAString(attributes[i].value), true);
    }
    if (top.kind == FrameKind::Markup) {
        top.node->AppendSimpleXmlElement(node);
    } else {
        top.element->HandleSimpleXmlElement(TAG_FORMAT_TAG, node);
    }
    Frame frame;
    frame.kind = FrameKind::Markup;
    _Place(frame, name);
    frame.node = &node;
    frame.element = top.element;
    frame.line = mTokenizer.StartLine();
    frame.column = mTokenizer.StartColumn();
    mFrames.push_back(std::move(frame));
}

void DocumentReader::EndElement(const char*)
{
    if (mFailed || mFrames.empty()) {
        return;
    }
    Frame& frame = mFrames.back();
    switch (frame.kind) {
    case FrameKind::Skip:
        if (frame.depth > 0) {
            --frame.depth;
            return;
        }
        break;
    case FrameKind::TextChild:
        _EndTextFrame(frame);
        break;
    case FrameKind::Markup:
        // A node with text alone keeps it as its character data.
        if (frame.node->GetChildCount() == 0 && !frame.text.empty()) {
            frame.node->SetPCData(VYAString(frame.text.data(), frame.text.size()), true);
            frame.text.clear();
        } else {
            _FlushMarkupText();
        }
        break;
    case FrameKind::Element:
        _EndElementFrame(frame);
        break;
    case FrameKind::Root:
        if (!IsBlank(frame.text)) {
            _Report(eSeverityWarning, "text of ODX is not read", _Path(mFrames.size()), frame.line, frame.column);
            ++mState.unhandled;
        }
        break;
    case FrameKind::Wrapper:
        break;
    }
    if (!mFailed) {
        mFrames.pop_back();
    }
}

void DocumentReader::_EndTextFrame(Frame& frame)
{
    const ChildRule& rule = *frame.rule;
    VOdxElement& owner = *frame.element;
    long long number = 0;
    if (!Convert(rule.value, rule.literals, frame.text, number)) {
        const std::string what = rule.value == ValueKind::Enum && rule.literals != nullptr
                                     ? std::string("an unknown literal of ") + rule.literals->name
                                     : std::string("not ") + KindName(rule.value);
        _Report(eSeverityError, std::string(rule.name) + " '" + frame.text + "' is " + what, _Path(mFrames.size()),
                frame.line, frame.column);
        return;
    }
    bool taken = false;
    switch (rule.value) {
    case ValueKind::Text:
        taken = owner.HandleTChar(rule.tag, frame.text.c_str());
        break;
    case ValueKind::Enum:
        // An enumeration's number goes by HandleUInt.
        taken = owner.HandleUInt(rule.tag, static_cast<uint32_t>(number));
        break;
    case ValueKind::UInt:
        taken = owner.HandleUInt(rule.tag, static_cast<uint32_t>(number));
        break;
    case ValueKind::Int:
        taken = owner.HandleInt(rule.tag, static_cast<int32_t>(number));
        break;
    case ValueKind::Byte:
        taken = owner.HandleByte(rule.tag, static_cast<uint8_t>(number));
        break;
    case ValueKind::Bool:
        taken = owner.HandleBool(rule.tag, number != 0);
        break;
    case ValueKind::Double:
        taken = owner.HandleDouble(rule.tag, std::strtod(frame.text.c_str(), nullptr));
        break;
    }
    if (!taken) {
        _Report(eSeverityWarning, std::string(rule.name) + " was not taken", _Path(mFrames.size()), frame.line, frame.column);
        ++mState.unhandled;
    }
}

void DocumentReader::_EndElementFrame(Frame& frame)
{
    const ClassTable& table = *frame.table;
    if (table.content == Content::Bytes) {
        std::vector<unsigned char> bytes;
        if (!ParseHex(frame.text, bytes)) {
            _Report(eSeverityError, std::string(frame.rule->name) + " is no hexadecimal text: '" + frame.text + "'",
                    _Path(mFrames.size()), frame.line, frame.column);
            return;
        }
        frame.element = new NODX220::VByteStream(bytes.data(), static_cast<unsigned>(bytes.size()), *frame.maker,
                                                 frame.rule->tag);
        frame.text.clear();
        _AttachPending(*frame.element);
    }
    VOdxElement& element = *frame.element;
    switch (table.content) {
    case Content::Text:
        element.HandleTChar(table.contentTag, frame.text.c_str());
        break;
    case Content::Date:
        // A date without a zone is read as far as it goes (the zone is UTC); only a date cut
        // short of its time is wrong.
        if (!static_cast<VDateTime&>(element).ParseUtcString(frame.text.c_str(), "T") &&
            !HasDateAndTime(frame.text)) {
            _Report(eSeverityError, "DATE is no date and time: '" + frame.text + "'", _Path(mFrames.size()), frame.line,
                    frame.column);
        }
        break;
    case Content::Markup:
        _FlushMarkupText();
        break;
    case Content::None:
    case Content::Bytes:
    case Content::Reference:
        if (!IsBlank(frame.text)) {
            _Report(eSeverityWarning, std::string("text of ") + frame.rule->name + " is not read", _Path(mFrames.size()),
                    frame.line, frame.column);
            ++mState.unhandled;
        }
        break;
    }
    _Deliver(frame, element);
}

void DocumentReader::_Deliver(Frame& frame, VOdxElement& child)
{
    const ChildRule& rule = *frame.rule;
    VOdxElement& target = rule.into != nullptr ? rule.into(*frame.owner) : *frame.owner;
    // A child that joins a compound the owner holds replaces nothing.
    if (rule.present != nullptr && &target == frame.owner && rule.present(*frame.owner)) {
        _Report(eSeverityWarning, std::string("this ") + rule.name + " replaces an earlier one", _Path(mFrames.size()),
                frame.line, frame.column);
        ++mState.unhandled;
    }
    bool taken = false;
    try {
        taken = target.HandleTag(rule.tag, child);
    } catch (const std::bad_cast&) {
        taken = false;
    }
    if (!taken) {
        _Report(eSeverityWarning, std::string(rule.name) + " could not be placed", _Path(mFrames.size()), frame.line,
                frame.column);
        ++mState.unhandled;
        _Park(child);
        return;
    }
    if (frame.owner == &mState.root) {
        mCategories.push_back(&child);
    }
}

void DocumentReader::_ApplyAttributes(VOdxElement& element, const ClassTable& table,
                                      const XmlAttribute* attributes, size_t count, const char* elementName,
                                      const Frame& frame)
{
    for (size_t i = 0; i < count; ++i) {
        const char* name = attributes[i].name;
        if (std::strncmp(name, "xmlns", 5) == 0 || std::strncmp(name, "xsi:", 4) == 0) {
            continue;
        }
        const AttributeRule* rule = nullptr;
        for (uint16_t a = 0; a < table.attributeCount; ++a) {
            if (std::strcmp(table.attributes[a].name, name) == 0) {
                rule = &table.attributes[a];
                break;
            }
        }
        unsigned line = 0;
        unsigned column = 0;
        mTokenizer.AttributePosition(name, line, column);
        if (rule == nullptr) {
            std::string message = std::string("attribute ") + name + " of " + elementName + " is not read";
            if (const char* reason = UnheldReason(elementName, ("@" + std::string(name)).c_str())) {
                message += std::string(": ") + reason;
            }
            _Report(eSeverityWarning, message, _Path(mFrames.size(), &frame), line, column);
            ++mState.unhandled;
            continue;
        }
        long long number = 0;
        const std::string value = attributes[i].value;
        if (!Convert(rule->kind, rule->literals, value, number)) {
            const std::string what = rule->kind == ValueKind::Enum
                                         ? std::string("an unknown literal of ") + rule->literals->name
                                         : std::string("not ") + KindName(rule->kind);
            _Report(eSeverityError, std::string("attribute ") + name + "='" + value + "' is " + what,
                    _Path(mFrames.size(), &frame), line, column);
            continue;
        }
        rule->store(element, value.c_str(), number);
    }
}

void DocumentReader::Text(const char* text, size_t length)
{
    if (mFailed || mFrames.empty()) {
        return;
    }
    Frame& top = mFrames.back();
    if (top.kind != FrameKind::Skip) {
        top.text.append(text, length);
    }
}

void DocumentReader::_FlushMarkupText()
{
    Frame& top = mFrames.back();
    if (top.text.empty()) {
        return;
    }
    std::string text;
    text.swap(top.text);
    // Layout between nodes (a line break and indentation) is no content.
    if (IsBlank(text) && text.find('\n') != std::string::npos) {
        return;
    }
    VSimpleXmlElement& node = VOdxFactory::Instance().MakeSimpleXmlElement("");
    node.SetPCData(VYAString(text.data(), text.size()), true);
    if (top.kind == FrameKind::Markup) {
        top.node->AppendSimpleXmlElement(node);
    } else {
        top.element->HandleSimpleXmlElement(TAG_FORMAT_TAG, node);
    }
}

void DocumentReader::Comment(const char* text)
{
    if (mFailed) {
        return;
    }
    if (!mPendingComment.empty()) {
        mPendingComment += '\n';
    }
    mPendingComment += text;
}

void DocumentReader::ProcessingInstruction(const char* target, const char* data)
{
    if (!mFailed) {
        mPendingInstructions.emplace_back(target, data);
    }
}

void DocumentReader::_AttachPending(VOdxElement& element)
{
    if (!mPendingComment.empty()) {
        if (element.HasComment()) {
            element.SetComment((std::string(element.GetComment()) + "\n" + mPendingComment).c_str());
        } else {
            element.SetComment(mPendingComment.c_str());
        }
        mPendingComment.clear();
    }
    for (const auto& instruction : mPendingInstructions) {
        VProcessingInstruction& pi = element.ProcessingInstructionCollection().AddNew();
        pi.SetName(instruction.first.c_str());
        pi.SetContent(instruction.second.c_str());
    }
    mPendingInstructions.clear();
}

void DocumentReader::_Place(Frame& child, const char* name)
{
    child.name = name;
    for (auto& count : mFrames.back().childCounts) {
        if (count.first == name) {
            child.position = ++count.second;
            return;
        }
    }
    mFrames.back().childCounts.emplace_back(name, 1);
    child.position = 1;
}

std::string DocumentReader::_Path(size_t depth, const Frame* last) const
{
    std::string path;
    auto step = [&path](const Frame& frame) {
        if (!path.empty()) {
            path += '/';
        }
        path += frame.name + "[" + std::to_string(frame.position) + "]";
    };
    for (size_t i = 0; i < depth && i < mFrames.size(); ++i) {
        if (!mFrames[i].name.empty()) {
            step(mFrames[i]);
        }
    }
    if (last != nullptr) {
        step(*last);
    }
    return path;
}

void DocumentReader::_Skip(const char* name, const XmlAttribute* attributes, size_t count)
{
    Frame skipped;
    _Place(skipped, name);
    std::string message = std::string("element ") + name;
    for (size_t i = 0; i < count; ++i) {
        if (std::strcmp(attributes[i].name, "xsi:type") == 0) {
            message += std::string(" of xsi:type ") + attributes[i].value;
        }
    }
    message += " is not read";
    if (const char* reason = UnheldReason(mFrames.back().name.c_str(), name)) {
        message += std::string(": ") + reason;
    }
    _Report(eSeverityWarning, message, _Path(mFrames.size(), &skipped), mTokenizer.StartLine(),
            mTokenizer.StartColumn());
    ++mState.unhandled;
    Frame frame;
    frame.kind = FrameKind::Skip;
    mFrames.push_back(std::move(frame));
}

void DocumentReader::_Park(VOdxElement& element)
{
    VOdxFactory::Instance().UnhandledElementCollection().Append(element);
    mParked.push_back(&element);
}

void DocumentReader::_Report(VSeverity severity, const std::string& message, const std::string& path,
                             unsigned line, unsigned column)
{
    VDiagnostic diagnostic;
    diagnostic.mSeverity = severity;
    diagnostic.mFile = mLocation;
    diagnostic.mLine = line;
    diagnostic.mColumn = column;
    diagnostic.mPath = path;
    diagnostic.mMessage = message;
    mState.diagnostics.push_back(std::move(diagnostic));
}

void DocumentReader::_Fail(const std::string& message, unsigned line, unsigned column)
{
    if (mFailed) {
        return;
    }
    _Report(eSeverityError, message, _Path(mFrames.size()), line, column);
    mFailed = true;
    mTokenizer.Stop();
    _Discard();
}

void DocumentReader::_Discard()
{
    // Elements still being read belong to nobody yet; the innermost go first.
    for (auto it = mFrames.rbegin(); it != mFrames.rend(); ++it) {
        if (it->kind == FrameKind::Element && it->element != nullptr) {
            VOdxFactory::Instance().DestroyElement(it->element);
        }
    }
    mFrames.clear();
    NODX220::VUnhandledElementCollection& parked = VOdxFactory::Instance().UnhandledElementCollection();
    for (VOdxElement* element : mParked) {
        parked.Remove(*element);
        VOdxFactory::Instance().DestroyElement(element);
    }
    mParked.clear();
    for (VOdxElement* category : mCategories) {
        Internal::RemoveCategory(mState.root, *category);
    }
    mCategories.clear();
}

} // namespace Internal
} // namespace NODX220Xml
