// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QWidget>

// The least that a Qt program with a window can be: what the start of Vantle is measured against.
int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    QWidget window;
    window.resize(340, 600);
    window.show();
    return QApplication::exec();
}
