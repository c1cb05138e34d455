list(APPEND KELVORA_CORE_SOURCES
  ${CMAKE_CURRENT_SOURCE_DIR}/app/AppPaths.h
  ${CMAKE_CURRENT_SOURCE_DIR}/app/AppPaths.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/app/GlobalState.h
  ${CMAKE_CURRENT_SOURCE_DIR}/app/GlobalState.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/app/UserSettings.h
  ${CMAKE_CURRENT_SOURCE_DIR}/app/SettingsStore.h
  ${CMAKE_CURRENT_SOURCE_DIR}/app/SettingsStore.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/app/UserProfile.h
  ${CMAKE_CURRENT_SOURCE_DIR}/app/UserProfile.cpp
)
list(APPEND KELVORA_UI_SOURCES
  ${CMAKE_CURRENT_SOURCE_DIR}/app/kvglobal.h
  ${CMAKE_CURRENT_SOURCE_DIR}/app/kvglobal.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/app/FoundationWindow.h
  ${CMAKE_CURRENT_SOURCE_DIR}/app/FoundationWindow.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/app/UserPrompts.h
  ${CMAKE_CURRENT_SOURCE_DIR}/app/UserPrompts.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/app/ProfileController.h
  ${CMAKE_CURRENT_SOURCE_DIR}/app/ProfileController.cpp
)
