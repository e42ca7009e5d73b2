// Boxes of the system: messages, questions, files, other programs.
#pragma once

#include <QString>

#include "gui/toolkit.h"

class QWidget;

namespace vx3::desktop {

void ShowMessage(QWidget* parent, int32_t kind, const QString& text);
bool AskQuestion(QWidget* parent, const QString& text);
bool ChoosePath(QWidget* parent, const gui::ChooseRequest& request, std::string& chosen);

// Paths are native bytes. False if nothing could be started.
bool RevealInFileManager(const std::string& path);
bool OpenWithSystem(const std::string& path);

} // namespace vx3::desktop
