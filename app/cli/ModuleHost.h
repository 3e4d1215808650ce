#pragma once

#include <string>
#include <string_view>

#include "minihost/Host.h"

namespace VantrelSDK {
class LNodeSettings;
}

namespace kelmo {

/// Keeps what a host tells.
class KeptOutput : public minihost::ScriptOutput {
  public:
    void Print(std::string_view text) override { text_ += text; }
    void Info(std::string_view text) override { text_.append(text) += "\n"; }
    void Warning(std::string_view text) override { Info(text); }
    void Error(std::string_view text) override { Info(text); }
    const std::string& text() const { return text_; }

  private:
    std::string text_;
};

/// A text as the command language reads it, quoted.
std::string ScriptText(const std::string& text);

/// Loads the module that lies beside the program; false, with the reason and what the module told
/// in `error`, where that fails.
bool LoadModule(minihost::Host& host, std::string& error);

struct PictureFile {
    /// The file to write; empty for no picture.
    std::string path;
    std::string view = "persp";
    int width = 960, height = 720;
};

/// Draws an OBJ file as the module shows what is being sculpted, with these display settings. Takes
/// a host of its own: one that nothing else was done with. False with the reason.
bool DrawPicture(const std::string& obj, const VantrelSDK::LNodeSettings& settings,
                 const PictureFile& picture, std::string& error);

}  // namespace kelmo
