#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "Utilities/XML/Code/WCExpatXMLParser.h"
#include "Utilities/XML/Code/WCXMLFileIO.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WCStMemObj.h"
#include "core/WTErrors.h"
#include "files/WTFileManagerTypes.h"

MIREL_NAMESPACE_BEGIN

namespace XML {

class CXMLElement;

// Reads XML text into the element it was made on, and writes that element back as text.
//
// Reading goes through one WCExpatXMLParser that the builder owns for its lifetime, made at the
// first Build call (so a builder made only to write leaves the root's validity alone): a document
// can be fed once, in one buffer or in chunks. A document cut short returns 0 and leaves the root
// eXMLElementIncomplete; callers that need a whole document test the root's IsValid. Writing
// puts the declaration that was read (if any) before the tree, so a document written after being
// read keeps its declaration, while a tree built in memory gets none.
// The root element must outlive the builder.
// [any-thread] one object per thread.
class CXMLTreeBuilder {
public:
    using WTIdleCallBack = void (*)(void *context);

    explicit CXMLTreeBuilder(CXMLElement *root);
    explicit CXMLTreeBuilder(CXMLElement &root) : CXMLTreeBuilder(&root) {}
    ~CXMLTreeBuilder();
    CXMLTreeBuilder(const CXMLTreeBuilder &) = delete;
    CXMLTreeBuilder &operator=(const CXMLTreeBuilder &) = delete;

    // eFMFileNotFound when nothing is at `path`, eFMFileIsEmpty for an empty file, else the
    // file's bytes as BuildFromWCStMemObj.
    WTErr BuildFromFile(const WTXMLPath &path);
    // 0 without parsing for an empty object.
    WTErr BuildFromWCStMemObj(const Utils::WCStConstMemObj &memObj);
    // eMemNullPointer for a null buffer or one shorter than 4 bytes.
    WTErr BuildFromSingleBuffer(const char *buffer, std::uint64_t length);
    // Feeds one chunk; `done` turns true when the root has closed.
    WTErr BuildFromBuffer(const char *buffer, std::uint64_t length, bool &done);
    // Feeds a short document (at most 1024 bytes) and calls the idle callback once on success.
    // A longer buffer is refused with eValueWrongSize.
    WTErr BuildFromSingleBufferWithIdle(const char *buffer, std::uint64_t length);
    void SetIdleCallBack(WTIdleCallBack function, void *context) noexcept;

    // Depth limit in levels below the root, 512 by default.
    void SetParseLevel(std::int32_t limit) noexcept;

    // Appends `<?xml version="..." encoding="..."?>` and CR LF, with the parts that were read;
    // false, with `target` untouched, when the document declared neither.
    bool FormatXMLDecl(WCFixedStringBase &target) const noexcept;

    // The declaration, then the tree indented from level 0. Both replace the target's content.
    WTErr WriteToString(std::string &target) const;
    WTErr WriteToWCStMemObj(Utils::WCStMemObj &target) const;
    // Writes the same text to an open file at its cursor: every byte, or the file layer's code.
    WTErr AppendToOpenFile(FM::WTOpenFileType *const file) const;
    // Writes the same text to `path` with permissions rw-r--r-- (less the umask), atomically: an
    // existing file is replaced only once the new one is complete. Missing folders are made.
    WTErr WriteToDataFork(const WTXMLPath &path) const;

    CXMLElement *GetRoot() const noexcept { return m_root; }

private:
    std::string FormatDocument() const;
    WCExpatXMLParser &Parser();

    CXMLElement *m_root;
    std::unique_ptr<WCExpatXMLParser> m_parser;
    WTIdleCallBack m_idleCallBack = nullptr;
    void *m_idleContext = nullptr;
    std::int32_t m_depthLimit = WCExpatXMLParser::kDefaultDepthLimit;
};

} // namespace XML

MIREL_NAMESPACE_END
