// SPDX-License-Identifier: MIT
#pragma once

#include "WidgetsPrecompiled.h"

#include <QTest>
