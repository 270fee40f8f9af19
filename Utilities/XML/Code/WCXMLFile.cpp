#include "Utilities/XML/Code/WCXMLFile.h"

#include "Utilities/XML/Code/CXMLTreeBuilder.h"
#include "Utilities/XML/Code/WCXMLable.h"

MIREL_NAMESPACE_BEGIN

namespace {

// Parses a whole file into `root`: a document that ends before its root element closes is an
// error here, where it is not for the chunked builder.
WTErr BuildWholeFile(const XML::WTXMLPath &path, XML::CXMLElement &root) {
    XML::CXMLTreeBuilder builder(root);
    const WTErr err = builder.BuildFromFile(path);
    if (err != eNoErr)
        return err;
    return root.IsValid() ? eNoErr : eXMLElementIncomplete;
}

} // namespace

WCXMLFile::WCXMLFile(const XML::WTXMLPath &path)
    : WUValidatable(eNoErr), m_path(path), m_root(path.stem().c_str()) {
    SetError(PathError());
}

WCXMLFile::~WCXMLFile() = default;

WTErr WCXMLFile::PathError() const noexcept {
    return m_path.empty() ? eFMIllegalPathRef : eNoErr;
}

WTErr WCXMLFile::Read() {
    WTErr err = PathError();
    if (err == eNoErr)
        err = XML::CheckIsFile(m_path);
    if (err == eNoErr) {
        // Parsed aside and swapped in only when whole, so a bad file loses nothing.
        XML::CXMLElement fresh(m_root.GetName().c_str());
        err = BuildWholeFile(m_path, fresh);
        if (err == eNoErr)
            m_root = std::move(fresh);
    } else if (err != eFMIllegalPathRef) {
        err = eFMFileNotFound;
    }
    SetError(err);
    return err;
}

WTErr WCXMLFile::Write() {
    WTErr err = PathError();
    if (err == eNoErr) {
        XML::CXMLTreeBuilder builder(m_root);
        err = builder.WriteToDataFork(m_path);
    }
    SetError(err);
    return err;
}

namespace XML {

WTErr ReadWCXMLableFromFile(const WTXMLPath &path, WCXMLable &object) {
    CXMLElement root("Untitled");
    const WTErr err = BuildWholeFile(path, root);
    if (err == eNoErr)
        object.ReadFromXML(&root);
    return err;
}

WTErr WriteWCXMLableToFile(const WTXMLPath &path, const WCXMLable &object, const char *rootName) {
    CXMLElement root(rootName);
    object.WriteToXML(&root);
    CXMLTreeBuilder builder(root);
    return builder.WriteToDataFork(path);
}

} // namespace XML

MIREL_NAMESPACE_END
