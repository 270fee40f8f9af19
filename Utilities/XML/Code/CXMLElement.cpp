#include "Utilities/XML/Code/CXMLElement.h"

#include <cstring>
#include <sstream>

#include "Utilities/XML/Code/WUAtoi.h"

MIREL_NAMESPACE_BEGIN

namespace XML {

namespace {

constexpr char kValueOpen[] = "=\"";
constexpr char kValueClose[] = "\"\r";

template <typename T>
std::string PrintWith(T value, CXMLElement::WTStreamManipulator manipulator) {
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    if (manipulator != nullptr)
        stream << manipulator;
    stream << value;
    return stream.str();
}

void AppendPacked(std::string &packed, const char *name, const char *value, std::uint64_t length) {
    packed.append(name != nullptr ? name : "");
    packed.append(kValueOpen, 2);
    if (value != nullptr)
        packed.append(value, length);
    packed.append(kValueClose, 2);
}

WCFixedString<31> FloatText(float value) noexcept {
    WCFixedString<31> text;
    text.append_double_with_precision(value, 5);
    return text;
}

// The one scanner behind both parse-back forms; `add` receives name and value ranges.
template <typename Add>
WTErr ScanPacked(const std::string &packed, Add add) {
    if (packed.size() < 2 || packed.find(kValueOpen) == std::string::npos)
        return eNoErr;
    std::uint64_t position = 0;
    while (position + 2 <= packed.size()) {
        const std::uint64_t mark = packed.find(kValueOpen, position);
        if (mark == std::string::npos)
            break;
        const std::uint64_t close = packed.find(kValueClose, mark + 2);
        if (close == std::string::npos)
            return eXMLAttribMissing;
        add(packed.data() + position, mark - position, packed.data() + mark + 2, close - mark - 2);
        position = close + 2;
    }
    return eNoErr;
}

// Assigns `name`, cutting it at capacity on a UTF-8 character boundary.
void AssignName(CXMLElement::WTName &target, const char *name) noexcept {
    if (name == nullptr) {
        target.clear();
        return;
    }
    std::uint64_t length = std::strlen(name);
    if (length > target.capacity()) {
        length = target.capacity();
        // Step back over continuation bytes (10xxxxxx) to the start of the cut character.
        while (length > 0 && (static_cast<unsigned char>(name[length]) & 0xC0u) == 0x80u)
            --length;
    }
    target.assign(name, length);
}

} // namespace

void CXMLElement::SetName(const char *name) noexcept {
    AssignName(m_name, name);
}

CXMLElement::WTName CXMLElement::CutName(const char *name) noexcept {
    WTName cut;
    AssignName(cut, name);
    return cut;
}

CXMLElement::CXMLElement() noexcept : WUValidatable(eNoErr) {}

CXMLElement::CXMLElement(const char *name) : WUValidatable(eNoErr) {
    SetName(name);
}

CXMLElement::CXMLElement(const char *name, const char *text)
    : WUValidatable(eNoErr), m_text(text != nullptr ? text : "") {
    SetName(name);
}

CXMLElement::CXMLElement(const char *name, const char *text, std::uint64_t length)
    : WUValidatable(eNoErr) {
    SetName(name);
    if (text != nullptr)
        m_text.assign(text, length);
}

CXMLElement::CXMLElement(const char *name, const unsigned char *text)
    : CXMLElement(name, reinterpret_cast<const char *>(text)) {}

CXMLElement::CXMLElement(const char *name, short value, WTStreamManipulator manipulator)
    : WUValidatable(eNoErr), m_text(PrintWith(value, manipulator)) {
    SetName(name);
}

CXMLElement::CXMLElement(const char *name, unsigned short value, WTStreamManipulator manipulator)
    : WUValidatable(eNoErr), m_text(PrintWith(value, manipulator)) {
    SetName(name);
}

CXMLElement::CXMLElement(const char *name, int value, WTStreamManipulator manipulator)
    : WUValidatable(eNoErr), m_text(PrintWith(value, manipulator)) {
    SetName(name);
}

CXMLElement::CXMLElement(const char *name, unsigned int value, WTStreamManipulator manipulator)
    : WUValidatable(eNoErr), m_text(PrintWith(value, manipulator)) {
    SetName(name);
}

CXMLElement::CXMLElement(const char *name, std::int64_t value, WTStreamManipulator manipulator)
    : WUValidatable(eNoErr), m_text(PrintWith(value, manipulator)) {
    SetName(name);
}

CXMLElement::CXMLElement(const char *name, double value, WTStreamManipulator manipulator)
    : WUValidatable(eNoErr), m_text(PrintWith(value, manipulator)) {
    SetName(name);
}

CXMLElement::CXMLElement(const char *name, bool value)
    : WUValidatable(eNoErr), m_text(value ? "true" : "false") {
    SetName(name);
}

CXMLElement::CXMLElement(const CXMLElement &other) : WUValidatable(other.GetError()) {
    CopyFrom(other);
}

CXMLElement::CXMLElement(CXMLElement &&other) noexcept
    : WUValidatable(other.GetError()), m_name(other.m_name), m_text(std::move(other.m_text)),
      m_isCDATA(other.m_isCDATA), m_subElements(std::move(other.m_subElements)),
      m_attributes(std::move(other.m_attributes)) {
    other.m_subElements.clear();
    other.m_isCDATA = false;
    other.m_name.clear();
}

CXMLElement &CXMLElement::operator=(const CXMLElement &other) {
    if (this != &other) {
        // Built aside first, so a failed copy leaves this tree as it was.
        CXMLElement copy(other);
        *this = std::move(copy);
    }
    return *this;
}

CXMLElement &CXMLElement::operator=(CXMLElement &&other) noexcept {
    if (this != &other) {
        // Everything is taken out of `other` before this element's children are deleted, since
        // `other` may be one of them (an element replaced by one of its own descendants).
        const WTErr error = other.GetError();
        const WTName name = other.m_name;
        std::string text = std::move(other.m_text);
        const bool isCDATA = other.m_isCDATA;
        std::vector<CXMLElement *> subElements = std::move(other.m_subElements);
        std::string attributes = std::move(other.m_attributes);
        other.m_subElements.clear();
        other.m_isCDATA = false;
        other.m_name.clear();
        ClearSubElements();
        SetError(error);
        m_name = name;
        m_text = std::move(text);
        m_isCDATA = isCDATA;
        m_subElements = std::move(subElements);
        m_attributes = std::move(attributes);
        m_parent = nullptr;
    }
    return *this;
}

CXMLElement::~CXMLElement() {
    ClearSubElements();
}

void CXMLElement::CopyFrom(const CXMLElement &other) {
    m_name = other.m_name;
    m_text = other.m_text;
    m_isCDATA = other.m_isCDATA;
    m_attributes = other.m_attributes;
    // Iterative, so the depth of a tree is never limited by the stack.
    std::vector<std::pair<const CXMLElement *, CXMLElement *>> pending{{&other, this}};
    while (!pending.empty()) {
        const auto [source, target] = pending.back();
        pending.pop_back();
        target->m_subElements.reserve(source->m_subElements.size());
        for (const CXMLElement *child : source->m_subElements) {
            auto *copy = new CXMLElement();
            copy->SetError(child->GetError());
            copy->m_name = child->m_name;
            copy->m_text = child->m_text;
            copy->m_isCDATA = child->m_isCDATA;
            copy->m_attributes = child->m_attributes;
            target->m_subElements.push_back(copy);
            pending.emplace_back(child, copy);
        }
    }
}

void CXMLElement::AddAttrib(const char *name, const char *value) {
    AddAttrib(name, value, value != nullptr ? std::strlen(value) : 0);
}

void CXMLElement::AddAttrib(const char *name, const char *value, std::uint64_t valueLength) {
    AppendPacked(m_attributes, name, value, valueLength);
}

void CXMLElement::AddAttrib(const char *name, int value) {
    WCFixedString<31> text;
    text << value;
    AddAttrib(name, text.c_str(), text.size());
}

void CXMLElement::AddAttrib(const char *name, float value) {
    const WCFixedString<31> text = FloatText(value);
    AddAttrib(name, text.c_str(), text.size());
}

void CXMLElement::SetAttrib(const char *name, const char *value) {
    std::uint64_t start = 0;
    std::uint64_t end = 0;
    if (FindAttribValuePosition(name, start, end))
        m_attributes.replace(start, end - start, value != nullptr ? value : "");
    else
        AddAttrib(name, value);
}

void CXMLElement::SetAttrib(const char *name, int value) {
    WCFixedString<31> text;
    text << value;
    SetAttrib(name, text.c_str());
}

void CXMLElement::SetAttrib(const char *name, float value) {
    SetAttrib(name, FloatText(value).c_str());
}

bool CXMLElement::FindAttribValuePosition(const char *name, std::uint64_t &start,
                                          std::uint64_t &end) const noexcept {
    if (m_attributes.empty() || name == nullptr)
        return false;
    const std::uint64_t nameLength = std::strlen(name);
    const std::uint64_t size = m_attributes.size();
    const char *const data = m_attributes.data();
    std::uint64_t position = 0;
    while (position + 2 <= size) {
        const std::uint64_t mark = m_attributes.find(kValueOpen, position, 2);
        if (mark == std::string::npos)
            return false;
        if (mark - position == nameLength && std::memcmp(data + position, name, nameLength) == 0) {
            const std::uint64_t close = m_attributes.find(kValueClose, mark + 2, 2);
            if (close == std::string::npos)
                return false;
            start = mark + 2;
            end = close;
            return true;
        }
        const std::uint64_t close = m_attributes.find(kValueClose, mark + 2, 2);
        if (close == std::string::npos)
            return false;
        position = close + 2;
    }
    return false;
}

bool CXMLElement::AttribExists(const char *name) const noexcept {
    std::uint64_t start = 0;
    std::uint64_t end = 0;
    return FindAttribValuePosition(name, start, end);
}

bool CXMLElement::ReadShortValue(const char *name, WCFixedString<255> &out) const noexcept {
    std::uint64_t start = 0;
    std::uint64_t end = 0;
    if (!FindAttribValuePosition(name, start, end))
        return false;
    out.assign(m_attributes.data() + start, end - start);
    return true;
}

bool CXMLElement::GetAttrib(const char *name, short &out) const noexcept {
    WCFixedString<255> value;
    return ReadShortValue(name, value) && WUAtoi(value.c_str(), out) == eNoErr;
}

bool CXMLElement::GetAttrib(const char *name, int &out) const noexcept {
    WCFixedString<255> value;
    return ReadShortValue(name, value) && WUAtoi(value.c_str(), out) == eNoErr;
}

bool CXMLElement::GetAttrib(const char *name, float &out) const noexcept {
    WCFixedString<255> value;
    if (!ReadShortValue(name, value))
        return false;
    out = static_cast<float>(WUStod(value.c_str()));
    return true;
}

bool CXMLElement::GetAttrib(const char *name, std::string &out) const {
    out.clear();
    std::uint64_t start = 0;
    std::uint64_t end = 0;
    if (!FindAttribValuePosition(name, start, end))
        return false;
    out.assign(m_attributes, start, end - start);
    return true;
}

bool CXMLElement::GetAttrib(const char *name, WCFixedStringBase &out) const noexcept {
    out.clear();
    std::uint64_t start = 0;
    std::uint64_t end = 0;
    if (!FindAttribValuePosition(name, start, end))
        return false;
    out.assign(m_attributes.data() + start, end - start);
    return true;
}

int CXMLElement::GetAttribInt(const char *name) const noexcept {
    int value = 0;
    GetAttrib(name, value);
    return value;
}

CXMLElement::WTName CXMLElement::GetAttribString(const char *name) const noexcept {
    WTName value;
    GetAttrib(name, value);
    return value;
}

bool CXMLElement::GetID(int &out) const noexcept {
    return GetAttrib("ID", out);
}

bool CXMLElement::GetID(WCFixedStringBase &out) const noexcept {
    return GetAttrib("ID", out);
}

void CXMLElement::push_back(CXMLElement *element) {
    if (element != nullptr)
        m_subElements.push_back(element);
}

CXMLElement *CXMLElement::push_sub_element(CXMLElement *element) {
    push_back(element);
    return element;
}

CXMLElement *CXMLElement::SubElement(const char *name) const noexcept {
    if (name == nullptr)
        return nullptr;
    for (CXMLElement *child : m_subElements) {
        if (child->m_name.compare(name) == 0)
            return child;
    }
    return nullptr;
}

const char *CXMLElement::SubElementText(const char *name) const noexcept {
    const CXMLElement *child = SubElement(name);
    return child != nullptr ? child->m_text.c_str() : nullptr;
}

std::uint64_t CXMLElement::CountSubElements(int levels) const noexcept {
    if (levels < 1)
        return 0;
    std::uint64_t count = 0;
    std::vector<std::pair<const CXMLElement *, int>> pending{{this, levels}};
    while (!pending.empty()) {
        const auto [element, remaining] = pending.back();
        pending.pop_back();
        count += element->m_subElements.size();
        if (remaining > 1) {
            for (const CXMLElement *child : element->m_subElements)
                pending.emplace_back(child, remaining - 1);
        }
    }
    return count;
}

std::uint64_t CXMLElement::GetMemoryUsage() const noexcept {
    std::uint64_t bytes = 0;
    std::vector<const CXMLElement *> pending{this};
    while (!pending.empty()) {
        const CXMLElement *element = pending.back();
        pending.pop_back();
        bytes += sizeof(CXMLElement) + element->m_text.capacity() +
                 element->m_attributes.capacity() +
                 element->m_subElements.capacity() * sizeof(CXMLElement *);
        pending.insert(pending.end(), element->m_subElements.begin(), element->m_subElements.end());
    }
    return bytes;
}

void CXMLElement::ClearSubElements() noexcept {
    // Children are taken over before each delete, so deleting a tree of any depth never
    // recurses.
    std::vector<CXMLElement *> pending;
    pending.swap(m_subElements);
    while (!pending.empty()) {
        CXMLElement *element = pending.back();
        pending.pop_back();
        pending.insert(pending.end(), element->m_subElements.begin(), element->m_subElements.end());
        element->m_subElements.clear();
        delete element;
    }
}

void CXMLElement::Clear() noexcept {
    m_name.clear();
    m_text.clear();
    m_isCDATA = false;
    m_attributes.clear();
    ClearSubElements();
}

void CXMLElement::PromoteSubElements() {
    std::vector<CXMLElement *> grandChildren;
    for (const CXMLElement *child : m_subElements)
        grandChildren.insert(grandChildren.end(), child->m_subElements.begin(),
                             child->m_subElements.end());
    std::vector<CXMLElement *> former;
    former.swap(m_subElements);
    m_subElements = std::move(grandChildren);
    for (CXMLElement *child : former) {
        child->m_subElements.clear();
        delete child;
    }
}

std::string AttribVecToString(const std::vector<WTAttribPair> &attributes) {
    std::string packed;
    for (const WTAttribPair &attribute : attributes)
        AppendPacked(packed, attribute.first.c_str(), attribute.second.c_str(),
                     attribute.second.size());
    return packed;
}

WTErr StringToAttribVec(const std::string &packed, std::vector<WTAttribPair> &out) {
    return ScanPacked(packed, [&out](const char *name, std::uint64_t nameLength, const char *value,
                                     std::uint64_t valueLength) {
        WTAttribPair pair;
        pair.first.assign(name, nameLength);
        pair.second.assign(value, valueLength);
        out.push_back(pair);
    });
}

WTErr StringToAttribStdStringVec(const std::string &packed,
                                 std::vector<WTAttribStdStringPair> &out) {
    return ScanPacked(packed, [&out](const char *name, std::uint64_t nameLength, const char *value,
                                     std::uint64_t valueLength) {
        out.emplace_back(WCFixedString<31>(name, nameLength), std::string(value, valueLength));
    });
}

} // namespace XML

MIREL_NAMESPACE_END
