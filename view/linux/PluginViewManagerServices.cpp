// The services of the headless desktop that are not about one view's place: text box, dialogs,
// images, drag and drop, the way to the main thread, and the screens.
#include <utility>

#include "view/PluginViewManager.h"
#include "view/linux/WCHeadlessDesktop.h"
#include "view/linux/WUHeadlessView.h"

MIREL_NAMESPACE_BEGIN
namespace PluginViewManager {

namespace {

WCHeadlessDesktop &Desk() {
    return WCHeadlessDesktop::Get();
}

// Records the question and gets its answer from the responder, or the default button.
int Ask(const WCMessageBoxCreateOptions &options) {
    Desk().m_questions.push_back(options);
    if (Desk().m_responder) {
        // A copy, so that a responder that replaces itself is not destroyed while it runs.
        const auto responder = Desk().m_responder;
        return responder(options);
    }
    return options.m_defaultButton;
}

WCMessageBoxCreateOptions OfKind(const WCMessageBoxCreateOptions &options, WEDialogKind kind) {
    WCMessageBoxCreateOptions asked = options;
    asked.m_kind = kind;
    return asked;
}

} // namespace

// ---- text box and dialogs --------------------------------------------------------------------

int ActivateTextBox(WSPluginView *view, const WCPoint2D<short> &topLeft,
                    const WCPoint2D<short> &bottomRight, const WCTextBoxOptions &options) {
    return CallAtDoor([&] {
        Desk().View(view);
        if (bottomRight.x < topLeft.x || bottomRight.y < topLeft.y)
            throw int(eOutOfRangeNumber);
        QuitTextBox();
        WSTextBoxState &box = Desk().m_textBox;
        box.m_active = true;
        box.m_view = view;
        box.m_topLeft = topLeft;
        box.m_bottomRight = bottomRight;
        box.m_options = options;
        return eNoErr;
    });
}

int QuitTextBox() {
    WSTextBoxState left = std::exchange(Desk().m_textBox, WSTextBoxState());
    if (left.m_active && left.m_options.m_callback != nullptr)
        left.m_options.m_callback(left.m_options.m_refCon, left.m_options.m_text.c_str(), false);
    return eNoErr;
}

int GetKeyBoardParamsByTextBoxParams(const WCTextBoxOptions &, int &) {
    return eNotImplemented;
}

int GetTextBoxState(WSTextBoxState &outState) {
    outState = Desk().m_textBox;
    return eNoErr;
}

int CommitTextBox(const char *text) {
    if (text == nullptr)
        return eMemNullPointer;
    if (!Desk().m_textBox.m_active)
        return eWrongObjectState;
    WSTextBoxState box = std::exchange(Desk().m_textBox, WSTextBoxState());
    std::string typed(text);
    if (box.m_options.m_maxChars > 0 &&
        typed.size() > static_cast<std::size_t>(box.m_options.m_maxChars))
        typed.resize(static_cast<std::size_t>(box.m_options.m_maxChars));
    if (box.m_options.m_callback != nullptr)
        box.m_options.m_callback(box.m_options.m_refCon, typed.c_str(), true);
    return eNoErr;
}

int DisplayMessageBox(const WCMessageBoxCreateOptions &options, int &outButton) {
    outButton = Ask(options);
    return eNoErr;
}

int AlertBox(const char *title, const char *message) {
    WCMessageBoxCreateOptions options;
    options.m_kind = eDialogAlert;
    options.m_title = title != nullptr ? title : "";
    options.m_message = message != nullptr ? message : "";
    options.m_buttons = {"OK"};
    Ask(options);
    return eNoErr;
}

int ActivateAboutBox(WSPluginView *view, const char *text) {
    return CallAtDoor([&] {
        Desk().View(view);
        WCMessageBoxCreateOptions options;
        options.m_kind = eDialogAbout;
        options.m_message = text != nullptr ? text : "";
        options.m_buttons = {"OK"};
        Ask(options);
        return eNoErr;
    });
}

int ActivateFilteredTreeDialog(const WCMessageBoxCreateOptions &options, int &outChoice) {
    outChoice = Ask(OfKind(options, eDialogFilteredTree));
    return eNoErr;
}

int ActivateWindowDialog(const WCMessageBoxCreateOptions &options, int &outResult) {
    outResult = Ask(OfKind(options, eDialogWindow));
    return eNoErr;
}

void SetDialogResponder(std::function<int(const WCMessageBoxCreateOptions &)> responder) {
    Desk().m_responder = std::move(responder);
}

const std::vector<WCMessageBoxCreateOptions> &GetAskedQuestions() {
    return Desk().m_questions;
}

void ClearAskedQuestions() {
    Desk().m_questions.clear();
}

// ---- images ----------------------------------------------------------------------------------

int GetImageFromResource(WTResContainerType *, short, ImageData *&) {
    return eNotImplemented;
}

int ReleaseImageFromResource(ImageData *&) {
    return eNotImplemented;
}

// ---- drag and drop ---------------------------------------------------------------------------

int RegisterOsForDragAndDrop(WSPluginView *view) {
    return CallAtDoor([&] {
        Desk().View(view).m_dragDropRegistered = true;
        return eNoErr;
    });
}

int UnregisterOsForDragAndDrop(WSPluginView *view) {
    return CallAtDoor([&] {
        Desk().View(view).m_dragDropRegistered = false;
        return eNoErr;
    });
}

int IsRegisteredForDragAndDrop(WSPluginView *view, bool &outRegistered) {
    return CallAtDoor([&] {
        outRegistered = Desk().View(view).m_dragDropRegistered;
        return eNoErr;
    });
}

int BeginDragFilePath(WSPluginView *, const char *) {
    return eNotImplemented;
}

int CreateDataObject(void *&) {
    return eNotImplemented;
}

int CreateDropSource(void *&) {
    return eNotImplemented;
}

int CreateEnumFormatEtc(void *&) {
    return eNotImplemented;
}

// ---- to the main thread ----------------------------------------------------------------------

int SendMessageToMainThreadCallMyCallback(WTMainThreadCallback callback, void *refCon) {
    if (callback == nullptr)
        return eMemNullPointer;
    return Desk().m_queue.Post([callback, refCon] { callback(refCon); });
}

int SendSyncMessageToMainThreadCallMyCallback(WTMainThreadCallback callback, void *refCon) {
    if (callback == nullptr)
        return eMemNullPointer;
    return Desk().m_queue.PostAndWait([callback, refCon] { callback(refCon); });
}

int SendMessageToMainThreadAutomationInfoChange(std::function<void()> notify) {
    return Desk().m_queue.Post(std::move(notify));
}

int SendMessageToMainThreadNotifyParamValue(std::function<void()> notify) {
    return Desk().m_queue.Post(std::move(notify));
}

int SendMessageToMainThreadRelease(std::function<void()> release) {
    return Desk().m_queue.Post(std::move(release));
}

int SendMessageToMainThreadTouch(WSPluginView *view, const WCEventMessage &touch) {
    if (view == nullptr)
        return eMemNullPointer;
    // The view is only looked at on the main thread, where it may have gone in the meantime.
    return Desk().m_queue.Post([view, touch] {
        if (Desk().IsLiveView(view))
            view->m_dispatcher.HandleTouch(touch);
    });
}

int SendMessageToMainThreadViewSizeChanged(WSPluginView *view, int width, int height) {
    if (view == nullptr)
        return eMemNullPointer;
    if (width < 0 || height < 0)
        return eOutOfRangeNumber;
    return Desk().m_queue.Post([view, width, height] {
        if (!Desk().IsLiveView(view) || ResizeView(view, width, height, true) != eNoErr)
            return;
        WCEventMessage sizing;
        sizing.m_kind = eMsgSizing;
        sizing.m_position = WCPoint2D<short>(static_cast<short>(width), static_cast<short>(height));
        view->m_dispatcher.HandleEvent(sizing);
    });
}

std::size_t RunMainThreadQueue() {
    return Desk().m_queue.Run();
}

bool IsMainThread() {
    return Desk().m_queue.IsMainThread();
}

// ---- screens ---------------------------------------------------------------------------------

int SetScreens(const std::vector<WURect<int>> &screens) {
    if (screens.empty())
        return eOutOfRangeNumber;
    for (const WURect<int> &screen : screens)
        if (screen.IsEmpty())
            return eOutOfRangeNumber;
    Desk().m_screens = screens;
    return eNoErr;
}

} // namespace PluginViewManager

namespace Utils {

int GetAllScreensRectsInPixels(std::vector<WURect<int>> &outScreens) {
    outScreens = PluginViewManager::WCHeadlessDesktop::Get().m_screens;
    return eNoErr;
}

int HideCursor() {
    ++PluginViewManager::WCHeadlessDesktop::Get().m_cursorHideCount;
    return eNoErr;
}

int ShowCursor() {
    int &count = PluginViewManager::WCHeadlessDesktop::Get().m_cursorHideCount;
    if (count > 0)
        --count;
    return eNoErr;
}

bool IsCursorHidden() {
    return PluginViewManager::WCHeadlessDesktop::Get().m_cursorHideCount > 0;
}

int MoveCursor(const WCPoint2D<int> &global) {
    PluginViewManager::WCHeadlessDesktop::Get().m_cursorPosition = global;
    return eNoErr;
}

WCPoint2D<int> GetCursorPosition() {
    return PluginViewManager::WCHeadlessDesktop::Get().m_cursorPosition;
}

int SetCursor(int cursorId) {
    PluginViewManager::WCHeadlessDesktop::Get().m_cursorShape = cursorId;
    return eNoErr;
}

int InitCursor() {
    return SetCursor(0);
}

int GetCursorShape() {
    return PluginViewManager::WCHeadlessDesktop::Get().m_cursorShape;
}

} // namespace Utils

MIREL_NAMESPACE_END
