// SPDX-License-Identifier: MIT
#include "KLVAccordionViewItem.h"
