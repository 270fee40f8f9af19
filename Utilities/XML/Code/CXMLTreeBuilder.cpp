#include "Utilities/XML/Code/CXMLTreeBuilder.h"

#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/WriteXMLToStream.h"
#include "core/WUAssert.h"
#include "files/WUOpenFile.h"

MIREL_NAMESPACE_BEGIN

namespace XML {

namespace {

constexpr std::uint64_t kIdleChunk = 1024;

} // namespace

CXMLTreeBuilder::CXMLTreeBuilder(CXMLElement *root) : m_root(root) {}

CXMLTreeBuilder::~CXMLTreeBuilder() = default;

WCExpatXMLParser &CXMLTreeBuilder::Parser() {
    if (!m_parser) {
        m_parser = std::make_unique<WCExpatXMLParser>(m_root);
        m_parser->SetParseLevel(m_depthLimit);
    }
    return *m_parser;
}

WTErr CXMLTreeBuilder::BuildFromFile(const WTXMLPath &path) {
    MIREL_ASSERT_RETURN(m_root != nullptr, eMemNullPointer);
    Utils::WCStMemObj content;
    const WTErr err = ReadWholeFile(path, content);
    if (err != eNoErr)
        return err;
    if (content.Empty())
        return eFMFileIsEmpty;
    return BuildFromWCStMemObj(content);
}

WTErr CXMLTreeBuilder::BuildFromWCStMemObj(const Utils::WCStConstMemObj &memObj) {
    if (memObj.Empty())
        return eNoErr;
    return BuildFromSingleBuffer(static_cast<const char *>(memObj.GetPtr()), memObj.GetSize());
}

WTErr CXMLTreeBuilder::BuildFromSingleBuffer(const char *buffer, std::uint64_t length) {
    if (buffer == nullptr || length < 4)
        return eMemNullPointer;
    bool done = false;
    return BuildFromBuffer(buffer, length, done);
}

WTErr CXMLTreeBuilder::BuildFromBuffer(const char *buffer, std::uint64_t length, bool &done) {
    done = false;
    MIREL_ASSERT_RETURN(m_root != nullptr, eMemNullPointer);
    return Parser().Parse(buffer, length, done);
}

WTErr CXMLTreeBuilder::BuildFromSingleBufferWithIdle(const char *buffer, std::uint64_t length) {
    if (buffer == nullptr || length < 4)
        return eMemNullPointer;
    // The builder feeds one chunk only and never advances; a longer document would be cut.
    MIREL_ASSERT_RETURN(length <= kIdleChunk, eValueWrongSize);
    bool done = false;
    const WTErr err = BuildFromBuffer(buffer, length, done);
    if (err != eNoErr)
        return err;
    if (m_idleCallBack != nullptr)
        m_idleCallBack(m_idleContext);
    return eNoErr;
}

void CXMLTreeBuilder::SetIdleCallBack(WTIdleCallBack function, void *context) noexcept {
    m_idleCallBack = function;
    m_idleContext = context;
}

void CXMLTreeBuilder::SetParseLevel(std::int32_t limit) noexcept {
    m_depthLimit = limit;
    if (m_parser)
        m_parser->SetParseLevel(limit);
}

bool CXMLTreeBuilder::FormatXMLDecl(WCFixedStringBase &target) const noexcept {
    if (!m_parser)
        return false;
    const WCFixedString<31> &version = m_parser->GetXMLVersion();
    const WCFixedString<31> &encoding = m_parser->GetXMLEncoding();
    if (version.empty() && encoding.empty())
        return false;
    target << "<?xml";
    if (!version.empty())
        target << " version=" << '"' << version << '"';
    if (!encoding.empty())
        target << " encoding=" << '"' << encoding << '"';
    target << "?>"
           << "\r\n";
    return true;
}

std::string CXMLTreeBuilder::FormatDocument() const {
    std::string text;
    WCFixedString<127> declaration;
    if (FormatXMLDecl(declaration))
        text.append(declaration.c_str(), declaration.size());
    WriteXMLToString(text, m_root, false, true, 0);
    return text;
}

WTErr CXMLTreeBuilder::WriteToString(std::string &target) const {
    MIREL_ASSERT_RETURN(m_root != nullptr, eMemNullPointer);
    target = FormatDocument();
    return eNoErr;
}

WTErr CXMLTreeBuilder::WriteToWCStMemObj(Utils::WCStMemObj &target) const {
    MIREL_ASSERT_RETURN(m_root != nullptr, eMemNullPointer);
    const std::string text = FormatDocument();
    return target.Assign(text.data(), text.size());
}

WTErr CXMLTreeBuilder::AppendToOpenFile(FM::WTOpenFileType *const file) const {
    MIREL_ASSERT_RETURN(m_root != nullptr && file != nullptr, eMemNullPointer);
    const std::string text = FormatDocument();
    std::uint64_t written = 0;
    return FM::WriteToFile(*file, text.data(), text.size(), written);
}

WTErr CXMLTreeBuilder::WriteToDataFork(const WTXMLPath &path) const {
    MIREL_ASSERT_RETURN(m_root != nullptr, eMemNullPointer);
    const std::string text = FormatDocument();
    return WriteWholeFile(path, text.data(), text.size(), 420);
}

} // namespace XML

MIREL_NAMESPACE_END
