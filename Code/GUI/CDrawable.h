#pragma once

#include <vector>

#include "Utilities/XML/Code/CXMLable.h"
#include "core/MirelNamespace.h"
#include "core/WURect.h"
#include "resources/WCStRes.h"

MIREL_NAMESPACE_BEGIN

namespace miGS {
class WCGraphicStreamBinaryWriter;
}

// Whatever occupies a rectangle of the picture and can write itself into a graphic stream. The
// drawable rect is where it is now; the original rect is what the GUI XML gave, before scaling
// or moves. Hiding follows parents: an object counts hidden with its parents when any parent
// is. Parents are not owned. [main-thread]
class CDrawable : public CXMLable, public RM::WCResContainerUser {
public:
    CDrawable() = default;
    ~CDrawable() override = default;

    // Nothing by default: a plain drawable paints nothing.
    virtual int GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer);
    virtual void SetDrawableRect(const WURect<short> &rect) { m_DrawableRect = rect; }
    virtual const WURect<short> &GetDrawableRect() const { return m_DrawableRect; }
    virtual void Hide() { m_Hidden = true; }
    virtual void Show() { m_Hidden = false; }
    // Shown and with a non-empty rect.
    virtual bool IsDrawable() const { return !m_Hidden && !m_DrawableRect.IsEmpty(); }

    bool IsHidden(bool withParents = false) const;
    // IsHidden with parents, `depth` levels up already.
    bool IsHiddenBelow(int depth) const;
    bool ToDraw() const { return IsDrawable() && !IsHidden(true); }
    void addParent(CDrawable *parent);
    void RemoveParent(CDrawable *parent);
    const WURect<short> &GetOriginalRect() const noexcept { return m_OriginalRect; }
    void SetOriginalRect(const WURect<short> &rect) noexcept { m_OriginalRect = rect; }

protected:
    WURect<short> m_DrawableRect;
    WURect<short> m_OriginalRect;
    std::vector<CDrawable *> m_Parents;
    bool m_Hidden = false;
};

MIREL_NAMESPACE_END
