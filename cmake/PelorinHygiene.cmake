# One INTERFACE target carries every compile rule, so each library and test gets the same flags.
add_library(pelorin_hygiene INTERFACE)
target_compile_features(pelorin_hygiene INTERFACE cxx_std_20)
target_compile_definitions(pelorin_hygiene INTERFACE
    QT_NO_CAST_FROM_ASCII
    QT_NO_CONTEXTLESS_CONNECT
    QT_NO_KEYWORDS
    QT_NO_FOREACH)
target_compile_options(pelorin_hygiene INTERFACE
    -Wall -Wextra -Wshadow -Wold-style-cast -Wnon-virtual-dtor -Wpedantic)
if(PELORIN_WERROR)
    target_compile_options(pelorin_hygiene INTERFACE -Werror)
endif()
if(PELORIN_SANITIZE)
    target_compile_options(pelorin_hygiene INTERFACE
        -fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
    target_link_options(pelorin_hygiene INTERFACE -fsanitize=address,undefined)
endif()
