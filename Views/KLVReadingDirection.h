// SPDX-License-Identifier: MIT
#pragma once

class QLabel;

// A label aligns each text by the text's own direction. From this call on its
// text begins where everything around it does, whatever it is written in. To be
// called when the label's alignment is set.
void KLVFollowReadingDirection(QLabel &label);
