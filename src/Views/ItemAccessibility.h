#pragma once

namespace zelk {

// Completes what Qt Quick 6.4 tells assistive technologies of an item: that a disabled one is disabled and takes no
// focus, how full a bar is, and nothing of what a masked field holds. To be called before the first window is shown;
// more than once does no harm.
void installItemAccessibility();

} // namespace zelk
