// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

class Workspace;
struct ApplicationMetadata;

// What the program is, its version, who makes it and under which licence; all
// of it from the program's own metadata.
class VTAboutWindow final : public QDialog
{
    Q_OBJECT

public:
    // The workspace outlives the window.
    VTAboutWindow(const ApplicationMetadata &metadata, Workspace &workspace, QWidget *parent = nullptr);
};
