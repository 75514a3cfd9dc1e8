#pragma once

namespace brindlet::ui {

/// Whether Qt may already have laid out text in this process, and so read fonts through the font
/// configuration that is current.
enum class TextLaidOut { notYet, maybe };

/// Loads the system's font configuration and the installed fonts' caches, once for the process: the
/// first caller loads them and any other caller waits until they are loaded. Qt's font database
/// then finds them ready when it lays out its first text. Before any text is laid out, the load
/// leaves out the descriptions of the configuration's optional files, which only listing tools
/// read; later, the configuration already in use is kept as it is.
void readyFontConfiguration(TextLaidOut textLaidOut);

}  // namespace brindlet::ui
