#include "graphic_stream/WCGraphicStreamToSVG.h"

#include <cstdio>

#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/WriteXMLToStream.h"
#include "graphic_stream/GSConversions.h"
#include "graphic_stream/GraphicStreamVocabulary.h"

MIREL_NAMESPACE_BEGIN
namespace miGS {

namespace {

// Text from a stream may hold anything; XML takes neither control characters nor broken UTF-8,
// so those become '?'.
std::string CleanText(std::string_view text) {
    std::string out;
    CleanStreamText(text, out);
    return out;
}

std::string Number(double value) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%g", value);
    return buffer;
}

struct WSTextPlace {
    const char *m_Keyword;
    std::int64_t m_At;
};

// Where a text stands along one side of its frame, `extent` long, and the SVG keyword for that:
// at the start, at the end, or in the middle.
WSTextPlace TextPlacement(bool atStart, bool atEnd, const char *startKeyword,
                          const char *endKeyword, std::int64_t extent) {
    if (atStart)
        return {startKeyword, 0};
    if (atEnd)
        return {endKeyword, extent};
    return {"middle", extent / 2};
}

std::string HTMLColor(const SGSRGBAColor &color) {
    WCFixedString<15> text;
    SGSRGBAColorToHTMLColor(color, text);
    return text.c_str();
}

} // namespace

WCGraphicStreamToSVG::WCGraphicStreamToSVG(XML::CXMLElement *root) : m_Root(root) {}

WCGraphicStreamToSVG::~WCGraphicStreamToSVG() = default;

std::string WCGraphicStreamToSVG::GetSVGStr() const {
    std::string text;
    if (m_Root != nullptr)
        XML::WriteXMLToString(text, m_Root, false, true, 0);
    return text;
}

std::string WCGraphicStreamToSVG::NextID() {
    return "gs" + std::to_string(++m_NextID);
}

int WCGraphicStreamToSVG::BeforeExceStream(char *) {
    m_Parents.clear();
    m_ExtraGroups.clear();
    m_NextID = 0;
    if (m_Root == nullptr)
        throw static_cast<int>(eMemNullPointer);
    m_Root->Clear();
    m_Root->SetName("svg");
    m_Parents.push_back(m_Root);
    m_ExtraGroups.push_back(0);
    return 0;
}

XML::CXMLElement *WCGraphicStreamToSVG::AddChild(const char *name) {
    auto *child = new XML::CXMLElement(name);
    Current()->push_back(child);
    return child;
}

void WCGraphicStreamToSVG::OpenGroup(std::int64_t x, std::int64_t y) {
    XML::CXMLElement *group = AddChild("g");
    group->AddAttrib("id", NextID().c_str());
    const std::string transform = "translate(" + std::to_string(x) + "," + std::to_string(y) + ")";
    group->AddAttrib("transform", transform.c_str());
    m_Parents.push_back(group);
    m_ExtraGroups.push_back(0);
}

void WCGraphicStreamToSVG::CloseGroup() {
    // The root stays; groups opened by rotations close with their frame.
    if (m_Parents.size() <= 1)
        return;
    const int extra = m_ExtraGroups.back();
    m_ExtraGroups.pop_back();
    for (int i = 0; i <= extra && m_Parents.size() > 1; ++i)
        m_Parents.pop_back();
}

int WCGraphicStreamToSVG::BeginStream(SGSStream &stream) {
    // Only an earlier stream makes the root an SVG root; a remark or a loose record before the
    // first stream must not.
    if (m_Parents.size() > 1 || m_Root->AttribExists("xmlns")) {
        // A stream inside a stream is drawn like a frame.
        OpenGroup(stream.frame.rect.location.x, stream.frame.rect.location.y);
        return 0;
    }
    m_Root->AddAttrib("xmlns", "http://www.w3.org/2000/svg");
    m_Root->AddAttrib("xmlns:xlink", "http://www.w3.org/1999/xlink");
    m_Root->AddAttrib("version", "1.1");
    m_Root->AddAttrib("width", stream.frame.rect.size.width);
    m_Root->AddAttrib("height", stream.frame.rect.size.height);
    return 0;
}

int WCGraphicStreamToSVG::EndStream(SGSCommandHeader &) {
    CloseGroup();
    return 0;
}

int WCGraphicStreamToSVG::BeginFrame(SGSFrame &frame) {
    OpenGroup(frame.rect.location.x, frame.rect.location.y);
    return 0;
}

int WCGraphicStreamToSVG::EndFrame(SGSCommandHeader &) {
    CloseGroup();
    return 0;
}

int WCGraphicStreamToSVG::RotateFrame(SGSFrameRotate &rotate) {
    // What follows in the frame turns around the given point: a group of its own carries the
    // rotation and closes with the frame.
    XML::CXMLElement *group = AddChild("g");
    group->AddAttrib("id", NextID().c_str());
    const std::string transform = "rotate(" + std::to_string(rotate.angleDegrees) + "," +
                                  std::to_string(rotate.xOffset) + "," +
                                  std::to_string(rotate.yOffset) + ")";
    group->AddAttrib("transform", transform.c_str());
    m_Parents.push_back(group);
    ++m_ExtraGroups.back();
    return 0;
}

int WCGraphicStreamToSVG::ResourcesBaseURL(SGSData &data) {
    WCGraphicStreamEngineBase::ResourcesBaseURL(data);
    const std::string base = "file://" + StreamImagesFolder(GetResourcesBaseURL().view());
    m_Root->SetAttrib("xml:base", base.c_str());
    return 0;
}

int WCGraphicStreamToSVG::Remark(SGSData &data) {
    XML::CXMLElement *desc = AddChild("desc");
    desc->SetText(CleanText(GetDataText(data)));
    return 0;
}

int WCGraphicStreamToSVG::DrawImage(SGSDrawImage &image) {
    if (image.ResID == -1)
        return 0;
    std::string href;
    if (image.ResID == -100) {
        const SGSData *path = GetLatestDataOfPurpose(eGSPurposeText);
        if (path == nullptr)
            return 0;
        href = CleanText(GetDataText(*path));
    } else {
        href = std::to_string(image.ResID) + ".png";
    }
    const WSFrameState *frame = GetTopFrameState();
    std::int32_t width = frame != nullptr ? frame->m_Frame.rect.size.width : 0;
    std::int32_t height = frame != nullptr ? frame->m_Frame.rect.size.height : 0;
    if (image.draw_rect.size.width != 0 && image.draw_rect.size.height != 0) {
        width = image.draw_rect.size.width;
        height = image.draw_rect.size.height;
    }
    XML::CXMLElement *element = AddChild("image");
    element->AddAttrib("id", NextID().c_str());
    element->AddAttrib("x", image.draw_rect.location.x);
    element->AddAttrib("y", image.draw_rect.location.y);
    element->AddAttrib("width", width);
    element->AddAttrib("height", height);
    element->AddAttrib("href", href.c_str());
    element->AddAttrib("xlink:href", href.c_str());
    return 0;
}

int WCGraphicStreamToSVG::DrawTheText(SGSDrawText &text) {
    const SGSData *data = GetLatestDataOfPurpose(eGSPurposeText);
    if (data == nullptr)
        return 0;
    const WSFrameState *frame = GetTopFrameState();
    const std::int64_t width = frame != nullptr ? frame->m_Frame.rect.size.width : 0;
    const std::int64_t height = frame != nullptr ? frame->m_Frame.rect.size.height : 0;
    const SGSFont &font = GetFont();

    const auto [anchor, x] = TextPlacement(text.hAlign == eGSAlignLeft,
                                           text.hAlign == eGSAlignRight, "start", "end", width);
    const auto [baseline, y] = TextPlacement(
        text.vAlign == eGSAlignTop, text.vAlign == eGSAlignBottom, "hanging", "bottom", height);

    XML::CXMLElement *element = AddChild("text");
    element->SetText(CleanText(GetDataText(*data)));
    element->AddAttrib("id", NextID().c_str());
    element->AddAttrib("x", std::to_string(x).c_str());
    element->AddAttrib("y", std::to_string(y).c_str());
    element->AddAttrib("font-family",
                       CleanText(FixedFieldText(font.name, sizeof font.name - 1)).c_str());
    element->AddAttrib("font-size", font.size);
    const std::string style =
        std::string("text-anchor:") + anchor + ";dominant-baseline:" + baseline;
    element->AddAttrib("style", style.c_str());
    element->AddAttrib("fill", HTMLColor(font.color).c_str());
    return 0;
}

int WCGraphicStreamToSVG::DrawVertices(SGSDrawVertices &vertices) {
    WCVertexPoints corners;
    if (!GetLatestVertexPoints(corners))
        return 0;

    std::string points;
    points.reserve(corners.size() * 12);
    // A fan's first vertex is its centre, which is not part of the outline.
    const std::size_t first = vertices.method == eGSTriangleFan ? 1 : 0;
    for (std::size_t i = first; i < corners.size(); ++i) {
        const WCPoint2D<float> corner = corners[i];
        if (!points.empty())
            points.push_back(' ');
        points += Number(corner.x) + "," + Number(corner.y);
    }

    double scaleX = 1.0;
    double scaleY = 1.0;
    GetVertexScale(vertices, scaleX, scaleY);
    const SGSSize &logical = vertices.logical_size;

    XML::CXMLElement *group = AddChild("g");
    group->AddAttrib("id", NextID().c_str());
    const std::string viewBox =
        "0 0 " + std::to_string(logical.width) + " " + std::to_string(logical.height);
    group->AddAttrib("viewBox", viewBox.c_str());
    group->AddAttrib("preserveAspectRatio", "none");
    const std::string transform =
        "translate(0,0) scale(" + Number(scaleX) + "," + Number(scaleY) + ")";
    group->AddAttrib("transform", transform.c_str());

    const bool closed = vertices.method == eGSPolygon || vertices.method == eGSTriangleFan;
    auto *shape = new XML::CXMLElement(closed ? "polygon" : "polyline");
    group->push_back(shape);
    shape->AddAttrib("id", NextID().c_str());
    shape->AddAttrib("points", points.c_str());
    const std::string color = HTMLColor(vertices.draw_color);
    shape->AddAttrib("stroke", color.c_str());
    shape->AddAttrib("stroke-width", Number(vertices.stroke_width).c_str());
    shape->AddAttrib("stroke-pattern", static_cast<int>(vertices.stroke_pattern));
    shape->AddAttrib("vector-effect", "non-scaling-stroke");
    shape->AddAttrib("fill", closed ? color.c_str() : "none");
    if (vertices.draw_color.alpha != 255) {
        const std::string opacity = Number(vertices.draw_color.alpha / 255.0);
        shape->AddAttrib("stroke-opacity", opacity.c_str());
        shape->AddAttrib("fill-opacity", opacity.c_str());
    }
    return 0;
}

} // namespace miGS
MIREL_NAMESPACE_END
