// SPDX-License-Identifier: MIT
// Headers that nearly every file above the core includes; never include this one by hand.
#pragma once

#include "tPrecompiledCore.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QMainWindow>
#include <QMdiArea>
#include <QMenu>
#include <QMessageBox>
#include <QSettings>
#include <QTimer>
#include <QWidget>
