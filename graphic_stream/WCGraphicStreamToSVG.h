#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/MirelNamespace.h"
#include "graphic_stream/WCGraphicStreamEngineBase.h"

MIREL_NAMESPACE_BEGIN
namespace XML {
class CXMLElement;
}
namespace miGS {

// Turns a stream into an SVG picture held in an XML element tree: the stream becomes the `svg`
// root, each frame a group translated to its place, images `image` elements referring to the
// plug-in's PNG resources by number, texts `text` elements in the frame's font, and vertex lists
// `polyline` or `polygon` elements. Ovals, clips and data records are not exported.
//
// The caller owns the root element, which must outlive the exporter's walks; each walk replaces
// what the root held. [any-thread]: one exporter per thread.
class WCGraphicStreamToSVG : public WCGraphicStreamEngineBase {
public:
    explicit WCGraphicStreamToSVG(XML::CXMLElement *root);
    ~WCGraphicStreamToSVG() override;

    // The SVG text of the last walk.
    std::string GetSVGStr() const;

    int BeginStream(SGSStream &stream) override;
    int EndStream(SGSCommandHeader &header) override;
    int BeginFrame(SGSFrame &frame) override;
    int EndFrame(SGSCommandHeader &header) override;
    int RotateFrame(SGSFrameRotate &rotate) override;
    int ResourcesBaseURL(SGSData &data) override;
    int Remark(SGSData &data) override;
    int DrawImage(SGSDrawImage &image) override;
    int DrawTheText(SGSDrawText &text) override;
    int DrawVertices(SGSDrawVertices &vertices) override;
    int BeforeExceStream(char *stream) override;

protected:
    // A new id for an element: "gs1", "gs2", ... in the order of the walk.
    std::string NextID();
    // The element new content goes into.
    XML::CXMLElement *Current() const noexcept { return m_Parents.back(); }

private:
    XML::CXMLElement *AddChild(const char *name);
    void OpenGroup(std::int64_t x, std::int64_t y);
    void CloseGroup();

    XML::CXMLElement *m_Root;
    std::vector<XML::CXMLElement *> m_Parents;
    // Per open group, how many extra groups a rotation opened inside it.
    std::vector<int> m_ExtraGroups;
    std::uint64_t m_NextID = 0;
};

} // namespace miGS
MIREL_NAMESPACE_END
