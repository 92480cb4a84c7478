# Build strictness in one place: every target of the project links this.
add_library(tolvar_strict INTERFACE)
target_compile_options(tolvar_strict INTERFACE
  -Wall -Wextra -Wpedantic -Wold-style-cast -Wshadow -Wnon-virtual-dtor
  -Wcast-align -Woverloaded-virtual -Wnull-dereference
  $<$<BOOL:${TOLVAR_WERROR}>:-Werror>)
target_compile_definitions(tolvar_strict INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CONTEXTLESS_CONNECT
  QT_NO_URL_CAST_FROM_STRING QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
  QT_DISABLE_DEPRECATED_UP_TO=0x060400)

# Tests keep the warnings but may spell strings as plain literals.
add_library(tolvar_test_strict INTERFACE)
target_compile_options(tolvar_test_strict INTERFACE
  -Wall -Wextra -Wpedantic -Wold-style-cast -Wshadow $<$<BOOL:${TOLVAR_WERROR}>:-Werror>)
target_compile_definitions(tolvar_test_strict INTERFACE QT_NO_CONTEXTLESS_CONNECT)
