#pragma once

// Every objectName that interface automation and the tests find widgets by.
// Sources' rows are "source-" followed by the source's identifier, and a
// search field's clear button its identifier followed by "-clear".
namespace Identifier {

// Shared components
inline constexpr char followSystem[] = "follow-system";
inline constexpr char sourceList[] = "source-list";
inline constexpr char sourceListScroll[] = "source-list-scroll";
inline constexpr char sourceEmpty[] = "source-empty";
inline constexpr char sourceRowPrefix[] = "source-";
inline constexpr char clearSuffix[] = "-clear";

// Panel
inline constexpr char settings[] = "settings";
inline constexpr char back[] = "back";
inline constexpr char panelOverflow[] = "panel-overflow";
inline constexpr char pinStatus[] = "pin-status";
inline constexpr char warning[] = "warning";
inline constexpr char sourceSearch[] = "source-search";
inline constexpr char keyboardSettings[] = "keyboard-settings";
inline constexpr char quit[] = "quit";
inline constexpr char loginEnabled[] = "login-enabled";
inline constexpr char loginProgress[] = "login-progress";
inline constexpr char setupReopen[] = "setup-reopen";
inline constexpr char settingsKeyboard[] = "settings-keyboard";
inline constexpr char about[] = "about";
inline constexpr char keepingHelp[] = "keeping-help";
inline constexpr char checkComputer[] = "check-computer";
inline constexpr char language[] = "language-menu";

// Setup flow
inline constexpr char setupSkip[] = "setup-skip";
inline constexpr char setupSearch[] = "setup-search";
inline constexpr char setupKeyboardSettings[] = "setup-keyboard-settings";
inline constexpr char setupRefresh[] = "setup-refresh";
inline constexpr char setupTarget[] = "setup-target";
inline constexpr char setupKeep[] = "setup-keep";
inline constexpr char setupLogin[] = "setup-login";
inline constexpr char setupWarning[] = "setup-warning";
inline constexpr char setupBack[] = "setup-back";
inline constexpr char setupNext[] = "setup-next";
inline constexpr char setupProgress[] = "setup-progress";

// About page
inline constexpr char aboutVersion[] = "about-version";
inline constexpr char checkUpdates[] = "check-updates";
inline constexpr char updateResult[] = "update-result";
inline constexpr char releasePage[] = "release-page";

} // namespace Identifier
