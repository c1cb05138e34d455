list(APPEND KELVORA_CORE_SOURCES
  ${CMAKE_CURRENT_SOURCE_DIR}/morse/PatternLookup.h
  ${CMAKE_CURRENT_SOURCE_DIR}/morse/PatternLookup.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/morse/TimingPlan.h
  ${CMAKE_CURRENT_SOURCE_DIR}/morse/TimingCalculator.h
  ${CMAKE_CURRENT_SOURCE_DIR}/morse/TimingCalculator.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/morse/ToneBank.h
  ${CMAKE_CURRENT_SOURCE_DIR}/morse/ToneBank.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/morse/SoundRenderer.h
  ${CMAKE_CURRENT_SOURCE_DIR}/morse/SoundRenderer.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/morse/SoundSettings.h
  ${CMAKE_CURRENT_SOURCE_DIR}/morse/SoundSettings.cpp
)
include(${CMAKE_CURRENT_SOURCE_DIR}/morse/panel_sources.cmake)
