// The model picker: the box with the model's name, and the two-level tree that drops down over it. Typing filters the
// tree; Return takes the model found first, Esc and a click elsewhere leave the model as it was.
#pragma once

#include <QFrame>
#include <QLineEdit>
#include <QTreeWidget>

#include "shell/main_form.h"
#include "shell/qt/bind_text.h"

namespace kvr::window {

class ModelPopup : public QFrame {
 public:
  ModelPopup(shell::MainForm& form, QWidget& window, QWidget& anchor);
  // A key that was typed before the popup was up.
  void typeAhead(QKeyEvent& key);

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void showTree();
  void fill();
  void filter(const QString& text);
  void choose(QTreeWidgetItem* item);
  void hideSoon();
  bool stepInto(int key);
  QTreeWidgetItem* firstMatch() const;
  shell::MainForm& form_;
  QWidget& anchor_;
  QLineEdit* search_;
  QTreeWidget* tree_;
  bool shown_ = false;
};

// The box with its popup; `Command3` opens it too.
QLineEdit* makeModelBox(shell::MainForm& form, QWidget& window);

}  // namespace kvr::window
