#include "Code/GUI/GuiSizes.h"

#include <cmath>
#include <cstdio>
#include <sstream>

#include <pugixml.hpp>

#include "core/linux/WUCLocaleNumbers.h"
#include "files/WUFileSystemObjects.h"

MIREL_NAMESPACE_BEGIN

namespace GuiSizes {

namespace {

constexpr const char *kFolderName = "SizesPreferences";
constexpr const char *kFileName = "GuiSizes.xml";

std::string AlgText(WCFourCC algType) {
    std::string text;
    for (unsigned int i = 0; i < 4; ++i)
        text += algType.GetChar(i);
    return text;
}

pugi::xml_node FindEntry(const pugi::xml_node &root, const std::string *alg) {
    for (pugi::xml_node size : root.children("Size")) {
        const std::string type = size.attribute("Type").as_string();
        if (alg == nullptr ? type == "Default"
                           : type == "Alg" && *alg == size.attribute("Alg").as_string())
            return size;
    }
    return {};
}

bool ParseFactor(const pugi::xml_node &entry, double &out) {
    const char *text = entry.text().as_string();
    char *end = nullptr;
    const double value = Utils::CLocaleStrtod(text, &end);
    if (end == text || !std::isfinite(value) || value <= 0.0)
        return false;
    out = value;
    return true;
}

} // namespace

FM::WCStPath GetPrefsFilePath() {
    FM::WCStPath path(FM::eUserDomain, FM::eMirelPreferencesFolder);
    path.Append(kFolderName);
    path.Append(kFileName);
    return path;
}

double ReadGuiSizeFromPrefs(WCFourCC algType) {
    pugi::xml_document document;
    if (!document.load_file(GetPrefsFilePath().GetNativePathString().c_str()))
        return 1.0;
    const pugi::xml_node root = document.child("GuiSizes");
    const std::string alg = AlgText(algType);
    double factor = 1.0;
    if (ParseFactor(FindEntry(root, &alg), factor) || ParseFactor(FindEntry(root, nullptr), factor))
        return factor;
    return 1.0;
}

WTErr WriteGuiSizeToPrefs(WCFourCC algType, double factor, bool asDefault) {
    if (!std::isfinite(factor) || factor <= 0.0)
        return eOutOfRangeNumber;
    const FM::WCStPath path = GetPrefsFilePath();
    pugi::xml_document document;
    if (!document.load_file(path.GetNativePathString().c_str()) || !document.child("GuiSizes")) {
        document.reset();
        document.append_child("GuiSizes");
    }
    pugi::xml_node root = document.child("GuiSizes");
    const std::string alg = AlgText(algType);
    pugi::xml_node entry = FindEntry(root, asDefault ? nullptr : &alg);
    if (!entry) {
        entry = root.append_child("Size");
        entry.append_attribute("Type") = asDefault ? "Default" : "Alg";
        if (!asDefault)
            entry.append_attribute("Alg") = alg.c_str();
    }
    char text[64];
    Utils::CLocaleFormatDouble(text, sizeof text, "%.*f", 6, factor);
    entry.text().set(text);
    std::ostringstream out;
    document.save(out, "  ");
    const std::string bytes = out.str();
    return FM::ReplaceFileContents(path, bytes.data(), bytes.size());
}

} // namespace GuiSizes

MIREL_NAMESPACE_END
