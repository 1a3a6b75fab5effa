// SPDX-License-Identifier: MIT
#pragma once

#include <ApplicationMetadata.h>
#include <CrashReport.h>
#include <SoftwareCentre.h>

// What the windows about the program itself work with. The defaults are those of this program and desktop.
struct VTHelpServices {
    ApplicationMetadata metadata = ApplicationMetadata::ofThisProgram();
    SoftwareCentre softwareCentre {};
    CrashReportFile crashReport { CrashReportFile::defaultPath() };
};
