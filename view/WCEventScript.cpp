#include "view/WCEventScript.h"

#include <charconv>
#include <new>
#include <utility>

#include <yaml-cpp/yaml.h>

#include "core/WTErrors.h"
#include "core/WUAssert.h"
#include "files/WCStPath.h"
#include "files/WUOpenFile.h"

MIREL_NAMESPACE_BEGIN
namespace PluginViewManager {

namespace {

enum WEField : unsigned {
    fX = 1u << 0,
    fY = 1u << 1,
    fButton = 1u << 2,
    fModifiers = 1u << 3,
    fAmount = 1u << 4,
    fKey = 1u << 5,
    fChar = 1u << 6,
    fFiles = 1u << 7,
    fMs = 1u << 8,
    fName = 1u << 9,
    fId = 1u << 10,
    fItem = 1u << 11,
    fText = 1u << 12,
};

struct WSName {
    const char *m_name;
    unsigned m_value;
};

constexpr WSName kFields[] = {
    {"x", fX},           {"y", fY},       {"button", fButton}, {"modifiers", fModifiers},
    {"amount", fAmount}, {"key", fKey},   {"char", fChar},     {"files", fFiles},
    {"ms", fMs},         {"name", fName}, {"id", fId},         {"item", fItem},
    {"text", fText}};

enum WEScriptEvent : unsigned {
    eScriptDown,
    eScriptUp,
    eScriptDoubleClick,
    eScriptMove,
    eScriptWheel,
    eScriptKey,
    eScriptKeyUp,
    eScriptDragOver,
    eScriptDrop,
    eScriptTouch,
    eScriptTouchUp,
    eScriptWait,
    eScriptFrame,
    eScriptMenu,
    eScriptText
};

constexpr unsigned kAt = fX | fY | fModifiers;
struct WSEventKind {
    const char *m_name;
    WEScriptEvent m_event;
    unsigned m_fields;
};
constexpr WSEventKind kEvents[] = {
    {"down", eScriptDown, kAt | fButton},
    {"up", eScriptUp, kAt | fButton},
    {"double-click", eScriptDoubleClick, kAt | fButton},
    {"move", eScriptMove, kAt},
    {"wheel", eScriptWheel, kAt | fAmount},
    {"key", eScriptKey, fKey | fChar | fModifiers},
    {"key-up", eScriptKeyUp, fKey | fChar | fModifiers},
    {"drag-over", eScriptDragOver, kAt | fFiles},
    {"drop", eScriptDrop, kAt | fFiles},
    {"touch", eScriptTouch, fX | fY | fId},
    {"touch-up", eScriptTouchUp, fX | fY | fId},
    {"wait", eScriptWait, fMs},
    {"frame", eScriptFrame, fName},
    {"menu", eScriptMenu, fItem},
    {"text", eScriptText, fText},
};

constexpr WSName kButtons[] = {
    {"left", eMouseButtonLeft}, {"right", eMouseButtonRight}, {"middle", eMouseButtonMiddle}};
constexpr WSName kModifiers[] = {{"primary", eHeldControl},
                                 {"secondary", eHeldLeftSuper},
                                 {"shift", eHeldShift},
                                 {"alt", eHeldAlt}};
constexpr WSName kKeys[] = {{"up", eKeyUp},          {"down", eKeyDown},
                            {"left", eKeyLeft},      {"right", eKeyRight},
                            {"home", eKeyHome},      {"end", eKeyEnd},
                            {"page-up", eKeyPageUp}, {"page-down", eKeyPageDown},
                            {"insert", eKeyInsert},  {"tab", eKeyTab},
                            {"return", eKeyReturn},  {"escape", eKeyEscape},
                            {"space", eKeySpace},    {"backspace", eKeyBackspace},
                            {"delete", eKeyDelete},  {"f1", eKeyF1},
                            {"f2", eKeyF2},          {"f3", eKeyF3},
                            {"f4", eKeyF4},          {"f5", eKeyF5},
                            {"f6", eKeyF6},          {"f7", eKeyF7},
                            {"f8", eKeyF8},          {"f9", eKeyF9},
                            {"f10", eKeyF10},        {"f11", eKeyF11},
                            {"f12", eKeyF12}};

template <std::size_t N>
const WSName *Find(const WSName (&table)[N], const std::string &name) {
    for (const WSName &entry : table)
        if (name == entry.m_name)
            return &entry;
    return nullptr;
}

// User text inside a message, cut so that a huge scalar does not make a huge message.
std::string Quote(const std::string &text) {
    return "'" + (text.size() > 40 ? text.substr(0, 40) + "..." : text) + "'";
}

// Reads into its own steps; a failure throws the code as int, its reason left in m_error.
class WCScriptReader {
public:
    std::vector<WCEventScriptStep> m_steps;
    std::string m_error;

    void ReadDocument(const std::string &text) {
        YAML::Node root;
        try {
            root = YAML::Load(text);
        } catch (const YAML::Exception &error) {
            Fail(eInvalidFileFormatProblem, std::string("not YAML: ") + error.what());
        }
        const YAML::Node events = root.IsMap() ? root["events"] : YAML::Node();
        if (!events || !events.IsSequence())
            Fail(eInvalidFileFormatProblem, "the document is no map with an \"events\" list");
        if (events.size() > WCEventScript::kMaxSteps)
            Fail(eOutOfRangeNumber,
                 "more than " + std::to_string(WCEventScript::kMaxSteps) + " steps");
        m_steps.reserve(events.size());
        for (const YAML::Node &step : events) {
            m_stepNumber = m_steps.size() + 1;
            m_line = step.Mark().line + 1;
            ReadStep(step);
            m_steps.back().m_line = m_line;
        }
    }

private:
    bool m_pressed[eMouseButtonCount] = {false, false, false};
    std::size_t m_stepNumber = 0;
    std::size_t m_fileCount = 0;
    int m_line = 0;

    [[noreturn]] void Fail(int code, const std::string &why) {
        m_error = m_stepNumber == 0 ? why
                                    : "step " + std::to_string(m_stepNumber) + " (line " +
                                          std::to_string(m_line) + "): " + why;
        throw code;
    }

    std::string Scalar(const YAML::Node &node, const char *field) {
        if (!node.IsScalar())
            Fail(eInvalidFileFormatProblem, std::string(field) + " is not a plain value");
        return node.Scalar();
    }

    template <std::size_t N>
    unsigned Name(const WSName (&table)[N], const YAML::Node &node, const char *what) {
        const std::string name = Scalar(node, what);
        const WSName *entry = Find(table, name);
        if (entry == nullptr)
            Fail(eValueNotFound, std::string("unknown ") + what + " " + Quote(name));
        return entry->m_value;
    }

    long long Integer(const YAML::Node &step, const char *field, long long low, long long high) {
        const YAML::Node node = step[field];
        if (!node)
            Fail(eKeyNotFound, std::string("'") + field + "' is missing");
        const std::string text = Scalar(node, field);
        long long value = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error == std::errc() && end != text.data() + text.size())
            Fail(eNotANumber, std::string(field) + " " + Quote(text) + " is not an integer");
        if (error == std::errc::result_out_of_range ||
            (error == std::errc() && (value < low || value > high)))
            Fail(eOutOfRangeNumber, std::string(field) + " " + Quote(text) + " is outside " +
                                        std::to_string(low) + ".." + std::to_string(high));
        if (error != std::errc())
            Fail(eNotANumber, std::string(field) + " " + Quote(text) + " is not an integer");
        return value;
    }

    unsigned Modifiers(const YAML::Node &node) {
        if (!node)
            return 0;
        if (!node.IsSequence())
            return Name(kModifiers, node, "modifier");
        // Lists stay short so that an alias repeated in every step cannot multiply the work.
        if (node.size() > std::size(kModifiers))
            Fail(eOutOfRangeNumber, "more modifiers than there are");
        unsigned mask = 0;
        for (const YAML::Node &name : node)
            mask |= Name(kModifiers, name, "modifier");
        return mask;
    }

    void ReadKey(const YAML::Node &step, WCEventMessage &message) {
        if (step["key"] && step["char"])
            Fail(eInvalidFileFormatProblem, "a key step takes 'key' or 'char', not both");
        if (step["key"]) {
            message.m_keyCode = static_cast<WEKeyCode>(Name(kKeys, step["key"], "key"));
            // The keys that type a character give it, as a keyboard does.
            if (message.m_keyCode < 128)
                message.m_keyChar = static_cast<char>(message.m_keyCode);
        } else if (step["char"]) {
            const std::string text = Scalar(step["char"], "char");
            if (text.size() != 1)
                Fail(eValueWrongSize, "char " + Quote(text) + " is not one byte");
            message.m_keyCode = eKeyCharacter;
            message.m_keyChar = text[0];
        } else {
            Fail(eKeyNotFound, "a key step needs 'key' or 'char'");
        }
    }

    void ReadFiles(const YAML::Node &step, WCEventMessage &message) {
        const YAML::Node files = step["files"];
        if (!files)
            Fail(eKeyNotFound, "'files' is missing");
        if (!files.IsSequence() || files.size() == 0)
            Fail(eInvalidFileFormatProblem, "'files' is no list of paths");
        m_fileCount += files.size();
        if (m_fileCount > WCEventScript::kMaxSteps)
            Fail(eOutOfRangeNumber,
                 "more than " + std::to_string(WCEventScript::kMaxSteps) + " files in the script");
        for (const YAML::Node &file : files) {
            std::string path = Scalar(file, "a file");
            if (path.empty() || path.size() > 4095)
                Fail(eFMPathTooLong, "file path " + Quote(path) + " is empty or too long");
            message.m_paths.push_back(std::move(path));
        }
    }

    void ReadFrameName(const YAML::Node &step, WCEventScriptStep &out) {
        if (!step["name"])
            Fail(eKeyNotFound, "'name' is missing");
        out.m_frameName = Scalar(step["name"], "name");
        const std::string &name = out.m_frameName;
        if (name.empty() || name.size() > WCEventScript::kMaxNameLength)
            Fail(eValueWrongSize, "frame name " + Quote(name) + " is empty or longer than " +
                                      std::to_string(WCEventScript::kMaxNameLength));
        // The name becomes a file name in the caller's folder, so it may not climb out of it.
        bool plain = name[0] != '.';
        for (const char ch : name)
            plain = plain && ((ch >= 'a' && ch <= 'z') || (ch >= 'A' && ch <= 'Z') ||
                              (ch >= '0' && ch <= '9') || ch == '-' || ch == '_' || ch == '.');
        if (!plain)
            Fail(eFMIllegalPathRef, "frame name " + Quote(name) + " is no plain file name");
    }

    void ReadStep(const YAML::Node &step) {
        if (!step.IsMap())
            Fail(eInvalidFileFormatProblem, "a step is not a map");
        if (!step["event"])
            Fail(eKeyNotFound, "'event' is missing");
        const std::string eventName = Scalar(step["event"], "event");
        const WSEventKind *kind = nullptr;
        for (const WSEventKind &entry : kEvents)
            if (eventName == entry.m_name)
                kind = &entry;
        if (kind == nullptr)
            Fail(eValueNotFound, "unknown event " + Quote(eventName));
        for (const auto &field : step) {
            const std::string key = field.first.IsScalar() ? field.first.Scalar() : "?";
            const WSName *known = Find(kFields, key);
            if (key != "event" && (known == nullptr || (kind->m_fields & known->m_value) == 0))
                Fail(eInvalidFileFormatProblem,
                     "field " + Quote(key) + " does not belong to a " + kind->m_name);
        }

        WCEventScriptStep &out = m_steps.emplace_back();
        if (kind->m_event == eScriptWait) {
            out.m_kind = WCEventScriptStep::eStepWait;
            out.m_waitMs = static_cast<std::uint64_t>(
                Integer(step, "ms", 0, static_cast<long long>(WCEventScript::kMaxWaitMs)));
            return;
        }
        if (kind->m_event == eScriptMenu) {
            out.m_kind = WCEventScriptStep::eStepMenuChoice;
            if (!step["item"])
                Fail(eKeyNotFound, "'item' is missing");
            out.m_menuItem = Scalar(step["item"], "item");
            if (out.m_menuItem.empty() || out.m_menuItem.size() > WCEventScript::kMaxNameLength)
                Fail(eValueWrongSize, "menu item " + Quote(out.m_menuItem) +
                                          " is empty or longer than " +
                                          std::to_string(WCEventScript::kMaxNameLength));
            return;
        }
        if (kind->m_event == eScriptText) {
            out.m_kind = WCEventScriptStep::eStepText;
            if (!step["text"])
                Fail(eKeyNotFound, "'text' is missing");
            out.m_text = Scalar(step["text"], "text");
            if (out.m_text.size() > WCEventScript::kMaxNameLength)
                Fail(eValueWrongSize, "text " + Quote(out.m_text) + " is longer than " +
                                          std::to_string(WCEventScript::kMaxNameLength));
            return;
        }
        if (kind->m_event == eScriptFrame) {
            out.m_kind = WCEventScriptStep::eStepFrame;
            ReadFrameName(step, out);
            return;
        }
        WCEventMessage &message = out.m_message;
        if (kind->m_fields & fX)
            message.m_position = {static_cast<short>(Integer(step, "x", -32768, 32767)),
                                  static_cast<short>(Integer(step, "y", -32768, 32767))};
        message.m_heldKeys = Modifiers(step["modifiers"]);
        const unsigned button =
            step["button"] ? Name(kButtons, step["button"], "button") : unsigned{eMouseButtonLeft};
        if (button == eMouseButtonMiddle && (kind->m_fields & fButton))
            Fail(eNotImplemented, "the middle button has no press or release message yet");
        const bool right = button == eMouseButtonRight;
        switch (kind->m_event) {
        case eScriptDown:
            message.m_kind = right ? eMsgRightButtonDown : eMsgLeftButtonDown;
            m_pressed[button] = true;
            break;
        case eScriptDoubleClick:
            message.m_kind = right ? eMsgRightDoubleClick : eMsgLeftDoubleClick;
            m_pressed[button] = true;
            break;
        case eScriptUp:
            message.m_kind = right ? eMsgRightButtonUp : eMsgLeftButtonUp;
            m_pressed[button] = false;
            break;
        case eScriptMove: message.m_kind = eMsgMouseMove; break;
        case eScriptWheel:
            message.m_kind = eMsgMouseWheel;
            message.m_wheelAmount = static_cast<int>(Integer(
                step, "amount", -WCEventScript::kMaxWheelAmount, WCEventScript::kMaxWheelAmount));
            break;
        case eScriptKey:
        case eScriptKeyUp:
            message.m_kind = kind->m_event == eScriptKey ? eMsgKeyDown : eMsgKeyUp;
            ReadKey(step, message);
            break;
        case eScriptDragOver:
        case eScriptDrop:
            message.m_kind = kind->m_event == eScriptDrop ? eMsgFileDrop : eMsgFileDragOver;
            ReadFiles(step, message);
            break;
        case eScriptTouch:
        case eScriptTouchUp:
            message.m_kind = eMsgTouch;
            message.m_param =
                step["id"] ? static_cast<unsigned>(Integer(step, "id", 0, 65535)) : 0u;
            break;
        case eScriptWait:
        case eScriptFrame:
        case eScriptMenu:
        case eScriptText: break;
        }
        // A mouse reports every button held down with each message, not only with its own; a
        // finger's left button says whether it is on the glass.
        for (int b = 0; b < eMouseButtonCount; ++b)
            message.m_buttons[b] = m_pressed[b];
        if (message.m_kind == eMsgTouch)
            message.m_buttons[eMouseButtonLeft] = kind->m_event == eScriptTouch;
    }
};

} // namespace

int WCEventScript::ReadFromYAML(const std::string &text) {
    WCScriptReader reader;
    try {
        reader.ReadDocument(text);
    } catch (int code) {
        m_lastError = std::move(reader.m_error);
        return code;
    } catch (const YAML::Exception &error) {
        m_lastError = std::string("not YAML: ") + error.what();
        return eInvalidFileFormatProblem;
    } catch (const std::bad_alloc &) {
        m_lastError = "out of memory";
        return eMemOutOfMemory;
    }
    m_steps.swap(reader.m_steps);
    m_lastError.clear();
    return eNoErr;
}

int WCEventScript::ReadFromFile(const char *path) {
    MIREL_ASSERT_RETURN(path != nullptr, eMemNullPointer);
    const FM::WCStPath file(path);
    std::uint64_t size = 0;
    int err = file.GetFileSize(size);
    if (err == eNoErr && size > kMaxFileSize)
        err = eFMFileSizeTooBig;
    std::string text;
    if (err == eNoErr)
        err = FM::ReadTheWholeFile(file, text);
    if (err != eNoErr) {
        m_lastError = std::string(path) + ": " + WTErrName(err);
        return err;
    }
    err = ReadFromYAML(text);
    if (err != eNoErr)
        m_lastError = std::string(path) + ": " + m_lastError;
    return err;
}

} // namespace PluginViewManager
MIREL_NAMESPACE_END
