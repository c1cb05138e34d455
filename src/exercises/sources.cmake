list(APPEND KELVORA_CORE_SOURCES
  ${CMAKE_CURRENT_SOURCE_DIR}/exercises/CorrectionStepper.h
  ${CMAKE_CURRENT_SOURCE_DIR}/exercises/CorrectionStepper.cpp
)
list(APPEND KELVORA_UI_SOURCES
  ${CMAKE_CURRENT_SOURCE_DIR}/exercises/CorrectionReplay.h
  ${CMAKE_CURRENT_SOURCE_DIR}/exercises/CorrectionReplay.cpp
)
