#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Code/Algorithm/WCAlgorithmBroadcaster.h"
#include "Code/GUI/CDrawable.h"
#include "Code/GUI/CSelectableHome.h"
#include "Code/GUI/ControlGroup.h"
#include "Code/GUI/WCGUIXMLReader.h"
#include "Code/GUI/WCNeighborable.h"
#include "Code/GUI/WCRegisterInfo.h"
#include "Code/GUI/WCTouchEvent.h"
#include "Code/GUI/WCSkinsData.h"
#include "Code/GUI/WCSystemBarListener.h"
#include "Code/GUI/WIControlOwner.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WCPoint2D.h"
#include "core/WCRGBAColor.h"
#include "core/WURect.h"
#include "Code/Process/KPAPIProcessMemory.h"
#include "files/WCStPath.h"
#include "resources/MirelComponentInfo.h"
#include "resources/WCResKey.h"
#include "view/WIViewFrameSource.h"

MIREL_NAMESPACE_BEGIN

class cALGORITHM;
class WCBaseImageVector;
class WCGUIControl;
class WCHtmlManager;
class X_CToolbarButton;
struct WSPluginView;
namespace PluginViewManager {
class WCEventData;
}
namespace Utils {
class WCStMemObj;
}

// The document of one plug-in GUI, read from a GUI XML resource: the controls (in drawing and
// hit-test order, and in reading order, which owns them), templates, base pictures, toolbar,
// groups, tab rings, web pages and skins, with the document's flags. The view layer hands it
// events and asks it for pictures; controls reach it through WIControlOwner. A plug-in derives
// from it to add its own control kinds through the two factory hooks.
// Life: construction, InitGui, FinishCreate, use, Dispose, destruction. [main-thread]
class CStandardGUI_X : public WCAlgorithmListener,
                       public WCSystemBarListener,
                       public CSelectableHome,
                       public CDrawable,
                       public WIControlOwner,
                       public PluginViewManager::WIViewFrameSource {
public:
    // Bits of the document's flag word (Flag_List).
    enum EGUIFlags : unsigned int {
        eNoSelectRect = 1,
        eNoAlwaysDraw = 2,
        eDropBaseImage = 3,
        eNoImages = 4,
        eNoAutomatableImages = 5,
        eNoClipping = 6,
        eFollowChainerScaling = 7,
    };
    // Bits of the control order flags.
    enum EControlOrderFlags : unsigned int {
        eIgnoreControlOrder = 0,
        eNonIdenticalTabOrderSizes = 1,
        eHasAutomationControlOrder = 2,
    };
    // One place in a tab ring: the control a name resolved to and its four neighbours.
    struct WSTabEntry : public WCNeighborable<WSTabEntry *> {
        WCFixedString<63> m_Name;
        WCGUIControl *m_pControl = nullptr;
    };

    static constexpr const char *kRedrawKeySuffix = "GUI_needs_redraw";
    static constexpr const char *kScalingKeySuffix = "GUI_scaling_factor";
    static constexpr std::uint64_t kDefaultGraphicStreamDataPtrThreshold = 128;
    // The group nesting a GUI XML may use; deeper groups are not read.
    static constexpr int kMaxGroupDepth = 64;

    CStandardGUI_X(WTResContainerType *&container, char const *pluginName);
    ~CStandardGUI_X() override;
    CStandardGUI_X(const CStandardGUI_X &) = delete;
    CStandardGUI_X &operator=(const CStandardGUI_X &) = delete;

    // ---- life --------------------------------------------------------------------------------
    // Publishes the redraw counter, loads the GUI XML `key` (filtered and templates resolved),
    // reads it, orders the controls and tabs, and reads the skins. A resource that does not load
    // is its code and leaves an empty document that is not alive; otherwise the skins' code.
    virtual int InitGui(cALGORITHM *alg, WCResKey &key);
    // The same for a document without pictures: nothing is drawn.
    int InitGuiWithoutImages(cALGORITHM *alg, WCResKey &key);
    // Finishes every control, links tabs and selection, joins the algorithm's listeners and
    // brings the setup title, skin and link groups up to date. A second call does nothing.
    virtual int FinishCreate();
    // Leaves the algorithm's listeners and deletes what the document owns; a second call does
    // nothing. The destructor calls it.
    virtual void Dispose();
    bool IsAlive() const noexcept { return m_Alive; }
    bool IsFinished() const noexcept { return m_Finished; }
    bool IsDisposed() const noexcept { return m_Disposed; }
    void SetPluginView(WSPluginView *view) noexcept { m_pPluginView = view; }
    // The view is going: a gesture in progress ends (the cursor shows again, the capture goes)
    // and a value box it held went with it.
    void ResetPluginView();
    WSPluginView *GetPluginView() const noexcept { return m_pPluginView; }
    // Where the host placed the GUI's window, in screen coordinates.
    void SetWindowPosition(const WCPoint2D<short> &position) noexcept {
        m_WindowPosition = position;
    }
    const WCPoint2D<short> &GetWindowPosition() const noexcept { return m_WindowPosition; }
    virtual void ActivateWindow() { m_WindowActivated = true; }
    virtual void DeactivateWindow() { m_WindowActivated = false; }
    bool IsWindowActivated() const noexcept { return m_WindowActivated; }

    // ---- reading and writing -----------------------------------------------------------------
    // A root whose "version" is neither "4" nor "5" reads nothing and is no fault. Otherwise the
    // first code of a part that did not read; the other parts are read all the same.
    virtual WTErr ReadFromXML(XML::CXMLElement const *const root, GUIXML::WCReader &reader);
    using CDrawable::ReadFromXML;
    WTErr ReadFromXMLFlags(XML::CXMLElement const &flags, unsigned int &word) const;
    // One "cCONTROLLER": a new control owned by the caller, or null when it has no "Class", an
    // unknown type, or neither type attribute.
    virtual WCGUIControl *ReadXML_Control(XML::CXMLElement const &element);
    WTErr ReadXML_ControlGroups(XML::CXMLElement const &element, ControlGroup *parent = nullptr,
                                int depth = 0);
    WTErr ReadXML_ControlOrderList(XML::CXMLElement const &element,
                                   std::vector<WCFixedString<63>> &order);
    WTErr ReadXML_Controls_List(XML::CXMLElement const &element, std::vector<WCGUIControl *> &into);
    WTErr ReadXML_Flag_List(XML::CXMLElement const &element);
    WTErr ReadXML_HTMLViewList(XML::CXMLElement const &element);
    WTErr ReadXML_PictList(XML::CXMLElement const &element);
    WTErr ReadXML_TabOrderList(XML::CXMLElement const &element);
    WTErr ReadXML_ToolBarControlList(XML::CXMLElement const &element);
    WTErr ReadXML_ViewRectList(XML::CXMLElement const &element);
    // A GUI XML that reads back into the same document: version "4", a "ref" to
    // "Default_Plugin", and every part this document keeps.
    XML::CXMLElement *WriteToXML(XML::CXMLElement *element) const override;
    XML::CXMLElement *WriteToXML_ControlOrderList() const;
    XML::CXMLElement *WriteToXML_ControlsList() const;
    XML::CXMLElement *WriteToXML_PictList() const;
    XML::CXMLElement *WriteToXML_ToolbarList() const;
    XML::CXMLElement *WriteToXML_ViewRect_List() const;
    // Elements of a GUI XML that this document does not read but a plug-in may expect.
    static bool IsXMLElementValidButUnhandled(const char *name) noexcept;

    // ---- control factories -------------------------------------------------------------------
    // The plug-in's own control kinds: a new control for `type`, or null to leave it to the
    // library.
    virtual WCGUIControl *CreateSpecificControls(WCFixedStringBase const &type);
    virtual X_CToolbarButton *CreateCustomToolbarControls(WCFixedStringBase const &type);

    // ---- controls ----------------------------------------------------------------------------
    WCGUIControl *GetControlPtrByName(const char *name) override;
    // Null beyond the list.
    WCGUIControl *GetControlPtrByIndex(std::int64_t index) const;
    // -1 for a name no control has.
    int GetControlIndexByName(const char *name) const;
    std::vector<WCGUIControl *>::const_iterator GetControlIterByName(const char *name) const;
    WCGUIControl *GetTemplateControlPtrByName(const char *name) const;
    X_CToolbarButton *GetToolBarControl(std::size_t index) const;
    std::size_t GetNumToolBarControls() const noexcept { return m_Toolbar.size(); }
    // eControlOutOfRange beyond the list.
    int GetControlNameOfLength(std::int64_t index, std::size_t length,
                               WCFixedStringBase &out) const;
    // The index of the topmost control under `point` (the last one in drawing order that is
    // drawn and hit), or -1.
    int InsideWhichControl(const WCPoint2D<short> &point) const;
    // The toolbar button under `point`, or null.
    X_CToolbarButton *InsideWhichToolbarControl(const WCPoint2D<short> &point) const;
    // eGUIObjectNotFound when no control is there.
    int GetControlNameByLocation(const WCPoint2D<short> &point, WCFixedStringBase &out) const;
    // Takes ownership; with `finish`, FinishCreate runs at once.
    int AddNewControl(WCGUIControl *control, bool finish);
    // Deletes the control and every link to it; eGUIObjectNotFound for one not in the document.
    int DeleteControl(WCGUIControl *control);
    std::size_t GetNumGUIControllers() const noexcept { return m_Controls.size(); }
    const std::vector<WCGUIControl *> &GetControls() const noexcept { return m_Controls; }
    const std::vector<WCGUIControl *> &GetControlsInReadingOrder() const noexcept {
        return m_ReadingOrder;
    }
    const std::vector<WCGUIControl *> &GetTemplateControls() const noexcept { return m_Templates; }
    void DoOnAllControls(const std::function<void(WCGUIControl &)> &action) const;
    void DoOnSomeControls(const std::function<bool(const WCGUIControl &)> &which,
                          const std::function<void(WCGUIControl &)> &action) const;
    void DoOnSomeControlsByLeadParam(std::uint64_t id,
                                     const std::function<void(WCGUIControl &)> &action) const;
    // Each registration, of every control, bound to parameter `id`.
    void DoOnSomeControlRegistrations(
        std::uint64_t id, const std::function<void(WCGUIControl &, std::size_t)> &action) const;
    void DoOnControlRegistrationsByControlName(
        const char *name, const std::function<void(WCGUIControl &, std::size_t)> &action) const;

    // ---- selection ---------------------------------------------------------------------------
    // The index of the first control above idle, or -1.
    int GetSelectedController() const;
    std::size_t GetNumSelectedControllers() const;
    // eControlOutOfRange beyond the list; otherwise the other controls go idle and this one
    // takes its top level.
    int SelectControl(std::int64_t index);
    void DeSelectAllControls() { ResetSelectedList(); }
    void DeSelectControl(WCGUIControl *control) override;
    void WatchControl(WCGUIControl *control) override;
    // -1 beyond the list.
    int GetNumRegisteredParamsForControl(std::int64_t index) const;

    // ---- groups ------------------------------------------------------------------------------
    bool GroupExists(const char *name) const override;
    int GroupAdd(const char *name) override;
    // eGUIObjectNotFound for an unknown group.
    int GroupAddControl(const char *name, WCGUIControl *control) override;
    int GroupRemoveControl(const char *name, WCGUIControl *control);
    int GroupHide(const char *name);
    int GroupShow(const char *name);
    int GroupShowHide(const char *name, bool show);
    ControlGroup *GetGroup(const char *name) const;
    std::size_t GetNumGroups() const noexcept { return m_Groups.size(); }
    // Moves every control by (dx, dy), or those of `group` when given.
    int OffsetControls(int dx, int dy, const char *group = nullptr);

    // ---- order and tabs ----------------------------------------------------------------------
    const std::vector<WCFixedString<63>> &GetRequestedControlOrder() const noexcept {
        return m_RequestedOrder;
    }
    const std::vector<WCFixedString<63>> &GetRequestedAutomationOrder() const noexcept {
        return m_AutomationOrder;
    }
    // The controls in the requested order (or the automation order, when the XML has one), those
    // the order does not name at the end in reading order.
    virtual std::vector<WCGUIControl *> CheckGetOrderedControlList(bool automation) const;
    void PrepareControlOrder();
    void PrepareTabOrder();
    void BuildTabGroups();
    void SetControlOrderTabOrderFlag(const char *name, bool on);
    bool GetControlOrderFlag(unsigned int bit) const noexcept {
        return bit < 32 && (m_ControlOrderFlags >> bit) & 1u;
    }
    const std::vector<WSTabEntry> &GetTabList(bool vertical) const noexcept {
        return vertical ? m_TabVert : m_TabHoriz;
    }
    // The tab ring of each group: the entries of the horizontal list whose control is in it.
    const std::vector<WSTabEntry> *GetTabGroup(const char *group) const;

    // ---- flags, pictures, geometry -----------------------------------------------------------
    bool GetGUIFlag(unsigned int bit) const override {
        return bit < 32 && (m_GUIFlags >> bit) & 1u;
    }
    void SetGUIFlag(unsigned int bit, bool on);
    std::uint64_t GetGraphicStreamDataPtrThreshold() const noexcept {
        return m_GraphicStreamDataPtrThreshold;
    }
    const WCRGBAColor &GetBackgroundColor() const noexcept { return m_BackgroundColor; }
    bool HasBackgroundColor() const noexcept { return m_HasBackgroundColor; }
    short GetAboutResID() const noexcept { return m_AboutResID; }
    short GetIconResID() const noexcept { return m_IconResID; }
    std::size_t GetNumBasePictVecs() const noexcept { return m_BasePicts.size(); }
    WCBaseImageVector *GetBasePictVec(std::size_t index) const;
    WCBaseImageVector *GetCurrentBasePictVec() const { return GetBasePictVec(m_CurrentBasePict); }
    // eOutOfRangeNumber beyond the list, the current one unchanged.
    int SetCurrentBasePictVec(std::size_t index);
    void ClearBasePicts();
    // The drawable rect of the document; the first rect also becomes the original rect.
    void SetViewRect(const WURect<short> &rect);
    const WURect<short> &GetViewRect() const noexcept { return m_DrawableRect; }
    const std::vector<WURect<short>> &GetViewRects() const noexcept { return m_ViewRects; }
    double GetGuiScalingFactor() const noexcept { return m_ScalingFactor; }
    // eOutOfRangeNumber for a factor that is not a positive number, with nothing changed.
    int SetGuiScalingFactor(double factor);
    double GetPreviousScalingFactor() const noexcept { return m_PreviousScalingFactor; }
    bool IsScalingFactorFitsCurrentScreen(double factor) const;

    // ---- redraw and drawing ------------------------------------------------------------------
    // Points the algorithm's keys "<plug-in>GUI_needs_redraw" (and, for a resizable GUI,
    // "<plug-in>GUI_scaling_factor") at this document; GUIs of one instance share the keys, so
    // the map points them back at the main GUI when another one goes.
    void PublishKeys();
    void SetNeedToRedrawGUI() override { ++m_RedrawCounter; }
    std::uint32_t GetRedrawCounter() const noexcept { return m_RedrawCounter; }
    // Every frame is a full one, unless "NoAlwaysDraw": then only while the redraw counter is
    // raised, and other frames hold only what changed.
    bool NeedToRedrawGUI() override;
    // A full frame is due, or a control, a toolbar button or the selection rect changed: what a
    // view's timer asks before it pulls a frame.
    bool HasSomethingToPaint() override;
    // One frame of the GUI: the stream record, the resources folder, the document's drawing and,
    // above all, the topmost control. Nothing with "NoImages".
    int GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) override;
    // The view clip, then a full frame (background colour, base picture, toolbar, every control)
    // or a minimal one, the selection rect; lowers the redraw counter.
    virtual int GetDrawInstructionsSelf(miGS::WCGraphicStreamBinaryWriter &writer);
    // One control in a frame of its drawable rect, unless hidden or a child control. (The name
    // keeps its historic spelling.)
    virtual int GetDrawIntructionsControl(miGS::WCGraphicStreamBinaryWriter &writer,
                                          WCGUIControl *control);
    // The control at `index` alone, with its piece of the base picture, for a host that paints
    // one item; eControlOutOfRange beyond the list.
    virtual int GetDrawInstructionsForControl(std::size_t index,
                                              miGS::WCGraphicStreamBinaryWriter &writer);
    // The base picture inside `rect`, one clipped image per picture that meets it.
    virtual int GetDrawInstructionsBasePict(miGS::WCGraphicStreamBinaryWriter &writer,
                                            const WURect<short> &rect);
    // The base picture inside several rects, in one frame of the view; nothing without rects.
    virtual int GetDrawInstructionsMultipleClipsBasePict(miGS::WCGraphicStreamBinaryWriter &writer,
                                                         const std::vector<WURect<short>> &rects);
    // The rubber band of a selection by drag, a white wire rect, when there is one.
    virtual int GetDrawInstructionsSelectedRect(miGS::WCGraphicStreamBinaryWriter &writer);
    // The base picture cut to the control's rect, inside the control's frame.
    virtual int GetDrawInstructionsControlBackground(miGS::WCGraphicStreamBinaryWriter &writer,
                                                     const WCGUIControl &control);
    // What changed since the last frame: the base picture under the dirty rects, then every
    // control that meets them, clipped to them (" (R)" those that changed, " (NR)" the others).
    int GetMinimumDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer);
    void ClearMinimumDrawInstructionsCache();
    // The dirty rects of the last minimal frame.
    const std::vector<WURect<short>> &GetDirtyRects() const noexcept { return m_DirtyRects; }
    // Writes the writer's stream to "<folder>/<name>.<format>" for "gs", "yaml", "graph_data"
    // and "svg"; another format does nothing. The folder is the one set, else
    // GetGraphicStreamDumpFolder().
    int WriteGraphicStreamToFile(miGS::WCGraphicStreamBinaryWriter &writer, const char *format,
                                 const char *name);
    static FM::WCStPath GetGraphicStreamDumpFolder();
    void SetGraphicStreamDumpFolder(const char *folder) { m_DumpFolder = folder ? folder : ""; }
    // The rubber band the input layer draws while a selection is dragged; empty for none.
    void SetSelectionRect(const WURect<short> &rect) noexcept { m_SelectionRect = rect; }
    const WURect<short> &GetDrawnSelectionRect() const noexcept { return m_DrawnSelectionRect; }

    // ---- input -------------------------------------------------------------------------------
    // Events come from the view (ViewEventCallback routes them) in GUI units, on the main thread.
    // A parameter change a control makes comes back as a chain of buffers, which the document
    // joins and hands to the process side at the end of the event. Events outside the view, on
    // hidden or disabled controls, or with absurd amounts change nothing.
    using WCEventData = PluginViewManager::WCEventData;
    using BUFFER_HEADER = KPAPI_PROCESS_MEMORY::BUFFER_HEADER;
    // Clock of wheel acceleration and hovers, in microseconds; a replay sets its own.
    using WTInputClock = std::int64_t (*)();

    // The callback a view of this document installs (reference: the document): routes the
    // event codes to the handlers below; true when handled.
    static bool ViewEventCallback(void *reference, int eventCode, WCEventData *event, void *owner);
    virtual int DoMouseDown(WCEventData &event);
    virtual int DoMouseMove(WCEventData &event);
    virtual int DoMouseUp(WCEventData &event);
    virtual int DoMouseWheel(WCEventData &event);
    virtual int DoKey(WCEventData &event, bool &handled);
    // A batch of WCTouchEvent records.
    virtual int DoTouch(const Utils::WCStMemObj &touchBuffer, bool &handled);
    virtual int DoPinchGesture(WCEventData &event, double dx, double dy);
    // `accepted`: some control under the point takes the files.
    virtual int DoFileDragOver(WCEventData &event, bool &accepted);
    virtual int DoFileDrop(WCEventData &event, bool &handled);

    // Hit test: the controls under `point` in list order, less hidden ones and overlapped
    // markers; then, unless the event forbids it, the selection follows the click.
    void CreateClickedList(std::vector<WCGUIControl *> &list, const WCPoint2D<short> &point) const;
    void FilterHiddenClickedControls(std::vector<WCGUIControl *> &list) const;
    void FilterOverlappedMarkers(std::vector<WCGUIControl *> &list) const;
    void GetFilteredClickedList(std::vector<WCGUIControl *> &list, bool build,
                                const WCPoint2D<short> &point, WCEventData &event);
    // The selected controls in drawing order and the active one (the highest level).
    void PrepareCurrSelectedList();
    const std::vector<WCGUIControl *> &GetCurrSelectedList() const noexcept {
        return m_SelectedList;
    }
    WCGUIControl *GetActiveControl() const noexcept { return m_pActiveControl; }
    // The selected controls less those whose parameter's link group is not the selection's.
    std::vector<WCGUIControl *> FilterNotLinkedFromSelected(
        const std::vector<WCGUIControl *> &list) const;
    bool IsLinkedToSelection(const WCGUIControl *control) const;

    // Mouse movement into state deltas (y grows upward).
    void MouseDelta_GetActiveControlParamDeltas();
    WCPoint2D<double> MouseDelta_Calculate(const WCEventData &event);
    void MouseDelta_RestrictToAxis(WCPoint2D<double> &delta, const bool *modifiers);
    void MouseDelta_ActiveControlChangeResolution(WCPoint2D<double> &delta);
    void MouseDelta_HighPrecision(WCPoint2D<double> &delta, int modifier, const bool *modifiers);
    void MouseDelta_ActiveControlChangeTouchResolution(const WCGUIControl &control,
                                                       WCPoint2D<double> &delta) const;
    static void ClearAxisLocks() noexcept { sAxisXLocked = sAxisYLocked = false; }
    // Wheel notches under 200 ms apart speed up: 32 minus 0.15 per elapsed ms.
    void AccelerateMouseWheel(WCPoint2D<double> &delta, std::int64_t nowMicroseconds);
    void LimitsRect_Reset();
    const WURect<double> &GetLimitsRect() const noexcept { return m_LimitsRect; }
    void SetInputClock(WTInputClock clock) noexcept { m_InputClock = clock; }
    bool IsInMouseDown() const noexcept { return m_InMouseDown; }
    bool IsTextEntryPending() const noexcept { return m_TextEntryPending; }
    // A click on empty space started a selection by rectangle.
    bool IsDragSelecting() const noexcept { return m_DragSelect; }

    int ModifyControlsOnMouseDown(WCEventData &event, bool &keepGoing);
    int ModifyControlsOnMouseDrag(WCEventData &event);
    int ModifyControlsOnMouseUp(WCEventData &event);
    int ModifyControlsOnMouseWheel(WCEventData &event);
    int ModifyControlsOnMouseHover(WCEventData &event);
    int ModifyControlsOnKey(WCEventData &event, bool &handled);
    int PassEventToSelectedControls(WCEventData &event, bool &handled);
    // True when a toolbar button took the click.
    bool ModifyToolBarControlsOnMouseDown(WCEventData &event);
    // eNotImplemented: the buttons' actions (presets, undo) are not built; the press is drawn.
    int ModifyToolBarControlsOnMouseUp(WCEventData &event);
    bool GetControlsDefaultHideMouse() const;
    // Whether typing a digit on a selected control opens its text box.
    virtual bool AcceptsTextEntry() const { return true; }
    // Opens the view's text box over the active control's value; the typed text comes back
    // through HandleTextBoxCallback.
    int TrackTextInput(WCEventData &event, bool fromMouseUp);
    static void HandleTextBoxCallback(void *refCon, const char *text, bool accepted);
    virtual int LaunchHelpFile();
    // The rubber band of a selection by drag, and the controls it selects.
    void UpdateSelectRect(WCEventData &event);
    void UpdateControlsSelectionToSelectionRect(const WURect<short> &rect, WCEventData &event);
    const WURect<short> &GetSelectRect() const noexcept { return m_SelectionRect; }

    // Touch: one record at a time, by its id.
    int DoSingleTouch(const WCTouchEvent &touch);
    int DoSingleTouchDown(const WCTouchEvent &touch);
    int DoSingleTouchMove(const WCTouchEvent &touch);
    int DoSingleTouchUp(const WCTouchEvent &touch);
    void ClearTouchEventsMap();
    static WCPoint2D<double> GetTouchDelta(const WCPoint2D<short> &from,
                                           const WCPoint2D<short> &to);

    // Value drag and drop: drop groups and their controls, and the values of the drag going on.
    void BuildDragDrop_DroppableMap();
    int DragDropStart(WCEventData &event);
    int DragDropMove(WCEventData &event);
    int DragDropStop(WCEventData &event);
    void SetDragDrop_DragValues(std::uint64_t paramId, int group, double value);
    void SetDragDrop_DropValues(std::uint64_t paramId, int group, short x, short y);
    const sDragDropValues &GetDragDrop_DragValues() const noexcept { return m_DragValues; }
    const sDragDropValues &GetDragDrop_DropValues() const noexcept { return m_DropValues; }
    const std::map<int, std::vector<WCGUIControl *>> &GetDroppableMap() const noexcept {
        return m_Droppable;
    }

    // The process side's chain operations, through the algorithm's exec callback.
    BUFFER_HEADER *ChainBuffers(BUFFER_HEADER *head, BUFFER_HEADER *next);
    // Sends the chain and frees it; the pointer is null after.
    int ExecuteAndDisposeBuffer(BUFFER_HEADER *&chain);

    // ---- algorithm events --------------------------------------------------------------------
    void PresetLoaded(Preset::CPresetInfo const &info) override;
    void PresetModified(EPluginSetup setup) override;
    void SetupTitleChanged(EPluginSetup setup, WCFixedStringBase const &title) override;
    void ActiveSetupChanged(EPluginSetup setup) override;
    using WCAlgorithmListener::SetupTitleChanged;
    // Whether the current preset of `setup` (-1 the active one) changed since it was loaded.
    bool IsPresetModified(int setup) const;
    const WCFixedString<255> &GetSetupTitle() const noexcept { return m_SetupTitle; }

    // ---- skins, pages, text --------------------------------------------------------------------
    // Remembers the skin; an unknown name or the present one does nothing.
    virtual int UpdateSkin(const char *name);
    const WCFixedString<63> &GetCurrentSkin() const noexcept { return m_CurrentSkin; }
    bool HasSkins() const noexcept { return m_Skins.GetNumSkins() > 0; }
    WCSkinsData &GetSkinsData() noexcept { return m_Skins; }
    WCHtmlManager *GetHtmlManager() const noexcept { return m_pHtmlManager.get(); }
    void SetIsDirectText(bool direct) noexcept { m_DirectText = direct; }
    bool GetIsDirectText() const noexcept { return m_DirectText; }
    // The GUI editor: on, and its move and resize modes.
    void SetEditorMode(bool on) noexcept { m_EditorMode = on; }
    void SetEditorMoveMode(bool on) noexcept { m_EditorMoveMode = on; }
    void SetEditorResizeMode(bool on) noexcept { m_EditorResizeMode = on; }
    bool IsEditorMode() const noexcept { return m_EditorMode; }
    bool IsEditorMoveMode() const noexcept { return m_EditorMoveMode; }
    bool IsEditorResizeMode() const noexcept { return m_EditorResizeMode; }

    cALGORITHM *GetAlgorithm() const noexcept { return m_pAlg; }
    const WCFixedString<127> &GetPluginName() const noexcept { return m_PluginName; }
    const WCResKey &GetGUIKey() const noexcept { return m_GUIKey; }
    const GUIXML::WCReader &GetReader() const noexcept { return m_Reader; }

protected:
    // Hooks of InitGui and Dispose for a derived GUI; empty here.
    virtual void InitGuiBeforeOrder() {}
    virtual void InitGuiAfterOrder() {}
    virtual void InitGuiLast() {}
    virtual void FinishCreateSelf() {}
    virtual void DisposeSelf() {}
    virtual void DisposeLast() {}
    // The screens of the display, in pixels, from the view layer.
    virtual std::vector<WURect<int>> GetAllScreensRects() const;
    // Whether the view fills a full-screen window (false without a view); a change repaints
    // everything.
    virtual bool IsViewInFullScreen() const;

private:
    WTErr ReadOneRootChild(XML::CXMLElement const &child, GUIXML::WCReader &reader);
    void ReadXML_TabList(XML::CXMLElement const &element, std::vector<WSTabEntry> &list);
    void LinkTabRing(std::vector<WSTabEntry> &list, bool vertical, bool linkControls);
    void RedrawToolbar();
    // The selection list in drawing order, linked as a ring, then the tab rings over it.
    void RelinkSelection();
    void UnpublishKeys();
    void DumpControlOrder(const std::vector<WCGUIControl *> &ordered) const;
    // Ends a mouse or touch gesture where it stands, values kept.
    void EndGesture();
    // The watched controls in drawing order, toolbar buttons left out (the toolbar draws apart).
    void OrderWatched();
    // Stops watching the controls that have nothing more to show.
    void PruneWatched();
    // The input state lets go of `control` (every control for null) before it is deleted.
    void ForgetInInput(const WCGUIControl *control);
    void DeleteOwned();

    // Input state.
    struct WSTouchRecord {
        WCTouchEvent m_Event;
        WCPoint2D<short> m_Last;
        std::vector<WCGUIControl *> m_Controls;
    };
    static bool sAxisXLocked;
    static bool sAxisYLocked;
    std::vector<WCGUIControl *> m_SelectedList;
    WCGUIControl *m_pActiveControl = nullptr;
    WCGUIControl *m_pHoverControl = nullptr;
    WCPoint2D<short> m_MouseLocation;
    WCPoint2D<short> m_PreviousMouseLocation;
    WCPoint2D<short> m_MouseDownLocation;
    std::size_t m_LeadIndexH = 0;
    std::size_t m_LeadIndexV = 0;
    double m_AccumulatorH = 0.0;
    double m_AccumulatorV = 0.0;
    WURect<double> m_LimitsRect;
    bool m_InMouseDown = false;
    bool m_TextEntryPending = false;
    // A text box of this document is open; a click elsewhere is taken by it.
    bool m_TextBoxOpen = false;
    bool m_DragSelect = false;
    bool m_SelectRectDragged = false;
    bool m_CursorHidden = false;
    bool m_HoverLock = false;
    X_CToolbarButton *m_pActiveToolbarButton = nullptr;
    std::int64_t m_LastWheelTime = 0;
    WTInputClock m_InputClock = nullptr;
    sDragDropValues m_DragValues = kNoDragDropValues;
    sDragDropValues m_DropValues = kNoDragDropValues;
    std::map<int, std::vector<WCGUIControl *>> m_Droppable;
    std::map<int, WSTouchRecord> m_Touches;

    cALGORITHM *m_pAlg = nullptr;
    WCFixedString<127> m_PluginName;
    MirelComponentInfo m_ComponentInfo{};
    WCResKey m_GUIKey;
    std::vector<WCGUIControl *> m_Controls;
    std::vector<WCGUIControl *> m_ReadingOrder;
    std::vector<WCGUIControl *> m_Templates;
    std::vector<X_CToolbarButton *> m_Toolbar;
    std::vector<std::unique_ptr<WCBaseImageVector>> m_BasePicts;
    std::size_t m_CurrentBasePict = 0;
    unsigned int m_GUIFlags = 0;
    unsigned int m_ControlOrderFlags = 0;
    std::uint64_t m_GraphicStreamDataPtrThreshold = kDefaultGraphicStreamDataPtrThreshold;
    double m_ScalingFactor = 1.0;
    double m_PreviousScalingFactor = 1.0;
    WCRGBAColor m_BackgroundColor{0, 0, 0, 255};
    bool m_HasBackgroundColor = false;
    short m_AboutResID = -1;
    short m_IconResID = -1;
    std::vector<WURect<short>> m_ViewRects;
    WCSkinsData m_Skins;
    WCFixedString<63> m_CurrentSkin;
    std::unique_ptr<WCHtmlManager> m_pHtmlManager;
    WSPluginView *m_pPluginView = nullptr;
    WCPoint2D<short> m_WindowPosition;
    std::uint32_t m_RedrawCounter = 0;
    std::vector<WSTabEntry> m_TabHoriz;
    std::vector<WSTabEntry> m_TabVert;
    bool m_HasTabHoriz = false;
    std::map<WCFixedString<63>, std::vector<WSTabEntry>> m_TabGroups;
    std::map<WCFixedString<63>, std::unique_ptr<ControlGroup>> m_Groups;
    std::vector<WCFixedString<63>> m_RequestedOrder;
    std::vector<WCFixedString<63>> m_AutomationOrder;
    GUIXML::WCReader m_Reader;
    // Drawing state: the dirty rects of this and the last minimal frame, the controls they noted
    // with their clips, the topmost control, the selection rect.
    struct WSNotedControl {
        WCGUIControl *m_pControl = nullptr;
        std::vector<WURect<short>> m_Clips;
    };
    std::vector<WURect<short>> m_DirtyRects;
    std::vector<WURect<short>> m_LastDirtyRects;
    std::vector<WSNotedControl> m_NotedControls;
    std::vector<WCGUIControl *> m_Hovering;
    // The controls that asked to be looked at (WatchControl); a frame looks at these alone.
    std::vector<WCGUIControl *> m_Watched;
    WCGUIControl *m_pTopmost = nullptr;
    WURect<short> m_SelectionRect;
    WURect<short> m_DrawnSelectionRect;
    bool m_WasFullScreen = false;
    bool m_DrawControlBackgrounds = false;
    std::string m_DumpFolder;
    WCFixedString<255> m_SetupTitle;
    bool m_PresetModified[2] = {false, false};
    bool m_Alive = false;
    bool m_Finished = false;
    bool m_Disposed = false;
    bool m_KeysPublished = false;
    bool m_ScalingPublished = false;
    bool m_WindowActivated = false;
    bool m_DirectText = false;
    bool m_EditorMode = false;
    bool m_EditorMoveMode = false;
    bool m_EditorResizeMode = false;
};

MIREL_NAMESPACE_END
