#include "Code/GUI/CDrawable.h"

#include <algorithm>

MIREL_NAMESPACE_BEGIN

int CDrawable::GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &) {
    return eNoErr;
}

namespace {

// Parent chains are short; the depth limit keeps a cycle written by mistake in a document from
// looping forever.
constexpr int kMaxParentDepth = 32;

bool HiddenWithParents(const CDrawable &drawable, const std::vector<CDrawable *> &parents,
                       int depth) {
    if (drawable.IsHidden(false))
        return true;
    if (depth >= kMaxParentDepth)
        return false;
    return std::any_of(parents.begin(), parents.end(), [depth](const CDrawable *parent) {
        return parent->IsHidden(false) || parent->IsHiddenBelow(depth + 1);
    });
}

} // namespace

bool CDrawable::IsHiddenBelow(int depth) const {
    return HiddenWithParents(*this, m_Parents, depth);
}

bool CDrawable::IsHidden(bool withParents) const {
    if (m_Hidden || !withParents)
        return m_Hidden;
    return HiddenWithParents(*this, m_Parents, 0);
}

void CDrawable::addParent(CDrawable *parent) {
    if (parent != nullptr && parent != this &&
        std::find(m_Parents.begin(), m_Parents.end(), parent) == m_Parents.end())
        m_Parents.push_back(parent);
}

void CDrawable::RemoveParent(CDrawable *parent) {
    m_Parents.erase(std::remove(m_Parents.begin(), m_Parents.end(), parent), m_Parents.end());
}

MIREL_NAMESPACE_END
