list(APPEND KELVORA_UI_SOURCES
  ${CMAKE_CURRENT_SOURCE_DIR}/morse/SoundSettingsPanel.h
  ${CMAKE_CURRENT_SOURCE_DIR}/morse/SoundSettingsPanel.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/morse/SoundSettingsPanel.ui
)
list(APPEND KELVORA_CORE_SOURCES
  ${CMAKE_CURRENT_SOURCE_DIR}/morse/SoundPresets.h
  ${CMAKE_CURRENT_SOURCE_DIR}/morse/SoundPresets.cpp
)
