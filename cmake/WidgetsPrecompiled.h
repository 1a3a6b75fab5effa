// SPDX-License-Identifier: MIT
#pragma once

#include "CorePrecompiled.h"

#include <QApplication>
#include <QPainter>
#include <QWidget>
