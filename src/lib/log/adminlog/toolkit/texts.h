#pragma once

#include <json/value.h>

#include <string>

namespace serverlog::log::adminlog {

/// The language of every statement, whatever the administrator's own is.
inline constexpr char kStatementLanguage[] = "enu";

/// Folders of the mail server's and the operating system's texts; a language is the file or folder
/// of that name in it.
inline constexpr char kPostCubeTexts[] = "/var/packages/PostCube-Server/target/app/texts/";
inline constexpr char kSystemTexts[] = "/usr/mero/meroman/webman/texts/";

/// Parses a text file or the text folder at `path`: an object of sections, each an object of keys
/// with their texts; what cannot be read is missing there.
Json::Value GetParsedText(std::string const& path);

/// The mail server's texts in `language`, such as "enu".
///
/// They are parsed by the first call, whose language on purpose decides for the life of the
/// process. Safe to call from several threads at once; so is GetZsmParsedText.
Json::Value GetPostCubeParsedText(std::string const& language);

/// The operating system's texts; otherwise as GetPostCubeParsedText.
Json::Value GetZsmParsedText(std::string const& language);

}  // namespace serverlog::log::adminlog
