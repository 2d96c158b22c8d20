// CorvaneUIKit: the user-interface toolkit of the payroll application.
// Include this one header to use the whole kit.
#pragma once

#include "kit/Categories/NSAlert+Corvane.hpp"
#include "kit/Categories/NSAppearance+Corvane.hpp"
#include "kit/Categories/NSApplication+Corvane.hpp"
#include "kit/Categories/NSBezierPath+Corvane.hpp"
#include "kit/Categories/NSColor+Corvane.hpp"
#include "kit/Categories/NSColor+Crayons.hpp"
#include "kit/Categories/NSParagraphStyle+Corvane.hpp"
#include "kit/Categories/NSPopover+Corvane.hpp"
#include "kit/Categories/NSView+QSStackView.hpp"
#include "kit/Categories/NSView+Utility.hpp"
#include "kit/Objects/CVBlockQueue.hpp"
#include "kit/Objects/CVDynamicColor.hpp"
#include "kit/Objects/CVPathQueue.hpp"
#include "kit/Objects/CVPathQueueDelegate.hpp"
#include "kit/Objects/CVPathQueueEntry.hpp"
#include "kit/Objects/CVUIStyler.hpp"
#include "kit/Views/CVContentView.hpp"
#include "kit/Views/CVView.hpp"
#include "kit/Views/QSClipView.hpp"
#include "kit/Views/QSStackView.hpp"
