list(APPEND KELVORA_CORE_SOURCES
  ${CMAKE_CURRENT_SOURCE_DIR}/playback/PcmFormat.h
  ${CMAKE_CURRENT_SOURCE_DIR}/playback/WavSound.h
  ${CMAKE_CURRENT_SOURCE_DIR}/playback/WavReader.h
  ${CMAKE_CURRENT_SOURCE_DIR}/playback/WavReader.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/playback/PcmConverter.h
  ${CMAKE_CURRENT_SOURCE_DIR}/playback/PcmConverter.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/playback/PttPortName.h
  ${CMAKE_CURRENT_SOURCE_DIR}/playback/PttPortName.cpp
)
list(APPEND KELVORA_UI_SOURCES
  ${CMAKE_CURRENT_SOURCE_DIR}/playback/PcmOutput.h
  ${CMAKE_CURRENT_SOURCE_DIR}/playback/ClockPcmOutput.h
  ${CMAKE_CURRENT_SOURCE_DIR}/playback/ClockPcmOutput.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/playback/SinkPcmOutput.h
  ${CMAKE_CURRENT_SOURCE_DIR}/playback/SinkPcmOutput.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/playback/MediaDevice.h
  ${CMAKE_CURRENT_SOURCE_DIR}/playback/MediaDevice.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/playback/PushToTalk.h
  ${CMAKE_CURRENT_SOURCE_DIR}/playback/NullPushToTalk.h
  ${CMAKE_CURRENT_SOURCE_DIR}/playback/SerialPushToTalk.h
  ${CMAKE_CURRENT_SOURCE_DIR}/playback/SerialPushToTalk.cpp
)
