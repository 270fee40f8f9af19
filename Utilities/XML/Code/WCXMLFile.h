#pragma once

#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/WCXMLFileIO.h"
#include "core/MirelNamespace.h"
#include "core/WTErrors.h"
#include "core/WUValidatable.h"

MIREL_NAMESPACE_BEGIN

namespace XML {
class WCXMLable;
} // namespace XML

// An XML document on disk and its tree. The root is named after the file's base name without
// extension until a read names it after the document's root. Read and Write return their code and
// also keep it as the object's validity. A failed Read (missing file, broken or truncated
// document) keeps the tree it had; Write replaces the file only with a complete one.
// [any-thread] one object per thread.
class WCXMLFile : public WUValidatable {
public:
    explicit WCXMLFile(const XML::WTXMLPath &path);
    ~WCXMLFile() override;

    // eFMIllegalPathRef for an empty path, eFMFileNotFound when the path is no file, the parse's
    // code, or eXMLElementIncomplete for a document that ends before its root closes.
    virtual WTErr Read();
    // Writes the tree, with permissions rw-r--r-- (less the umask).
    virtual WTErr Write();

    XML::CXMLElement *GetXML() noexcept { return &m_root; }
    const XML::CXMLElement *GetXML() const noexcept { return &m_root; }
    const XML::WTXMLPath &GetPath() const noexcept { return m_path; }

private:
    WTErr PathError() const noexcept;

    XML::WTXMLPath m_path;
    XML::CXMLElement m_root;
};

namespace XML {

// [any-thread] Builds a tree under a root named "Untitled" from the file and lets `object` read
// itself from it. A file that cannot be read or parsed whole leaves the object as it was and
// gives the code.
WTErr ReadWCXMLableFromFile(const WTXMLPath &path, WCXMLable &object);

// [any-thread] Writes `object` under a root named `rootName` to the file, atomically.
WTErr WriteWCXMLableToFile(const WTXMLPath &path, const WCXMLable &object, const char *rootName);

} // namespace XML

MIREL_NAMESPACE_END
