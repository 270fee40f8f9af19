#pragma once

#include <cstdint>
#include <ios>
#include <string>
#include <utility>
#include <vector>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WTErrors.h"
#include "core/WUValidatable.h"

MIREL_NAMESPACE_BEGIN

namespace XML {

// One element of the older XML tree: a name, a text, a CDATA flag, owned children in document
// order, and all attributes packed into one string. The packed form is, per attribute in
// insertion order, name `="` value `"` CR (0x0D), with values stored unescaped; every attribute
// lookup scans that string. This keeps an element to a handful of allocations at the price of a
// linear lookup, which is right for the small attribute counts of the system's documents. A value
// that itself holds a double quote followed by CR cannot be represented.
//
// An element owns its children and deletes them when it goes. The parent pointer is set only
// while a parser has the element open. Validity is the WUValidatable code: 0 for an element made
// in memory, eXMLElementIncomplete for the root of a parse that has not closed it.
// [any-thread] on distinct trees; a tree is used by one thread at a time.
class CXMLElement : public WUValidatable {
public:
    using WTName = WCFixedString<63>;
    using WTStreamManipulator = std::ios_base &(*)(std::ios_base &);

    CXMLElement() noexcept;
    explicit CXMLElement(const char *name);
    CXMLElement(const char *name, const char *text);
    CXMLElement(const char *name, const char *text, std::uint64_t length);
    CXMLElement(const char *name, const unsigned char *text);
    // The text is what a string stream with `manipulator` prints (std::hex gives "ff").
    CXMLElement(const char *name, short value, WTStreamManipulator manipulator = std::dec);
    CXMLElement(const char *name, unsigned short value, WTStreamManipulator manipulator = std::dec);
    CXMLElement(const char *name, int value, WTStreamManipulator manipulator = std::dec);
    CXMLElement(const char *name, unsigned int value, WTStreamManipulator manipulator = std::dec);
    CXMLElement(const char *name, std::int64_t value, WTStreamManipulator manipulator = std::dec);
    CXMLElement(const char *name, double value, WTStreamManipulator manipulator = std::dec);
    // "true" or "false".
    CXMLElement(const char *name, bool value);

    // Copies are deep; a copy has no parent.
    CXMLElement(const CXMLElement &other);
    CXMLElement(CXMLElement &&other) noexcept;
    CXMLElement &operator=(const CXMLElement &other);
    CXMLElement &operator=(CXMLElement &&other) noexcept;
    ~CXMLElement() override;

    // Name, cut at 63 bytes; a cut never splits a UTF-8 sequence, so a cut name still writes as
    // well-formed text.
    const WTName &GetName() const noexcept { return m_name; }
    void SetName(const char *name) noexcept;
    // `name` as an element would hold it, for lookups that must match the held names.
    static WTName CutName(const char *name) noexcept;

    const std::string &GetText() const noexcept { return m_text; }
    std::string &GetText() noexcept { return m_text; }
    void SetText(const char *text) { m_text.assign(text != nullptr ? text : ""); }
    void SetText(std::string text) noexcept { m_text = std::move(text); }
    void AppendText(const char *text, std::uint64_t length) { m_text.append(text, length); }

    bool IsCDATA() const noexcept { return m_isCDATA; }
    void SetCDATA(bool isCDATA) noexcept { m_isCDATA = isCDATA; }

    CXMLElement *GetParent() const noexcept { return m_parent; }
    void SetParent(CXMLElement *parent) noexcept { m_parent = parent; }

    // Attributes, packed as described above.
    const std::string &GetAttributesString() const noexcept { return m_attributes; }
    void SetAttributesString(std::string packed) noexcept { m_attributes = std::move(packed); }
    void ReserveAttributes(std::uint64_t bytes) { m_attributes.reserve(bytes); }

    // Appends without looking for the name, so a second call with the same name makes a duplicate
    // that lookups never see but the writer writes. An integer is written in decimal, a float with
    // five decimals.
    void AddAttrib(const char *name, const char *value);
    void AddAttrib(const char *name, const char *value, std::uint64_t valueLength);
    void AddAttrib(const char *name, int value);
    void AddAttrib(const char *name, float value);
    // Replaces the value of the first attribute of that name, else appends.
    void SetAttrib(const char *name, const char *value);
    void SetAttrib(const char *name, int value);
    void SetAttrib(const char *name, float value);

    bool AttribExists(const char *name) const noexcept;
    // Numeric forms read the value into a 255-character buffer; a value that is not a number
    // gives false and leaves `out` alone. The float form cannot fail once the attribute exists.
    bool GetAttrib(const char *name, short &out) const noexcept;
    bool GetAttrib(const char *name, int &out) const noexcept;
    bool GetAttrib(const char *name, float &out) const noexcept;
    // Clear the target first, so a miss leaves it empty. The fixed-string form cuts at capacity.
    bool GetAttrib(const char *name, std::string &out) const;
    bool GetAttrib(const char *name, WCFixedStringBase &out) const noexcept;
    // Only for an attribute known to exist: a miss or a non-number gives 0.
    int GetAttribInt(const char *name) const noexcept;
    // Empty on a miss.
    WTName GetAttribString(const char *name) const noexcept;
    // The attribute "ID".
    bool GetID(int &out) const noexcept;
    bool GetID(WCFixedStringBase &out) const noexcept;

    // Finds the value of `name` in the packed string: [start, end) is the value. False on a miss.
    bool FindAttribValuePosition(const char *name, std::uint64_t &start,
                                 std::uint64_t &end) const noexcept;

    // Children.
    const std::vector<CXMLElement *> &GetSubElements() const noexcept { return m_subElements; }
    std::vector<CXMLElement *> &GetSubElements() noexcept { return m_subElements; }
    // Takes ownership of `element` (null is ignored).
    void push_back(CXMLElement *element);
    CXMLElement *push_sub_element(CXMLElement *element);
    // The first direct child of exactly that name, or null; a null name gives null.
    CXMLElement *SubElement(const char *name) const noexcept;
    // That child's text, or null.
    const char *SubElementText(const char *name) const noexcept;
    // 0 below one level; the direct children for 1; for more, also the children's counts one
    // level less.
    std::uint64_t CountSubElements(int levels) const noexcept;
    // Bytes held by the tree: the object sizes and the capacities of strings and vectors.
    std::uint64_t GetMemoryUsage() const noexcept;

    // Deletes the children (the whole sub-tree).
    void ClearSubElements() noexcept;
    // Empties name, text, CDATA flag, attributes and children.
    void Clear() noexcept;
    // Replaces the children by the grandchildren, in order, and deletes the former children.
    void PromoteSubElements();

private:
    void CopyFrom(const CXMLElement &other);
    // Reads the value of `name` into a 255-character buffer; false on a miss.
    bool ReadShortValue(const char *name, WCFixedString<255> &out) const noexcept;

    WTName m_name;
    std::string m_text;
    bool m_isCDATA = false;
    std::vector<CXMLElement *> m_subElements;
    CXMLElement *m_parent = nullptr;
    std::string m_attributes;
};

using WTAttribPair = WCFixedStringPair<31, 255>;
using WTAttribStdStringPair = std::pair<WCFixedString<31>, std::string>;

// [any-thread] Builds the packed attribute string from a list of pairs.
std::string AttribVecToString(const std::vector<WTAttribPair> &attributes);
// [any-thread] Parses a packed string back, appending to `out`. 0 with nothing added on a string
// shorter than 2 characters or without `="`. Names are cut at 31 characters, values at 255 (the
// std::string form keeps values whole). A value without its closing `"` CR ends the parse with
// eXMLAttribMissing; what was found before stays in `out`.
WTErr StringToAttribVec(const std::string &packed, std::vector<WTAttribPair> &out);
WTErr StringToAttribStdStringVec(const std::string &packed,
                                 std::vector<WTAttribStdStringPair> &out);

} // namespace XML

MIREL_NAMESPACE_END
