#pragma once

#include "data/reading_dialogue.h"

namespace merlane::test {

/// A form that does nothing but be active or not.
class PlainForm : public Form {
 public:
  PlainForm(Desk& d, const std::string& formName) : Form(d, formName, "") {}
};

/// The dialogue in which data are read, with the forms whose activity it changes.
struct PlainReading {
  PlainReading(Desk& desk, const RunFlags& flags)
      : frmMenu(desk, "frmMenu"), frmInitialize(desk, "frmInitialize"), dialogue(desk, flags, frmMenu, frmInitialize) {}

  PlainForm frmMenu, frmInitialize;
  ReadingDialogue dialogue;
};

}  // namespace merlane::test
