#include "core/WUValidatable.h"

MIREL_NAMESPACE_BEGIN

// Defined here so the class has one home for its vtable.
WUValidatable::~WUValidatable() = default;

MIREL_NAMESPACE_END
