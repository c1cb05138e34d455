list(APPEND KELVORA_CORE_SOURCES
  ${CMAKE_CURRENT_SOURCE_DIR}/words/CollationKey.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/words/CollationKey.h
  ${CMAKE_CURRENT_SOURCE_DIR}/words/FrenchCollation.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/words/FrenchCollation.h
  ${CMAKE_CURRENT_SOURCE_DIR}/words/JetFunctions.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/words/JetFunctions.h
  ${CMAKE_CURRENT_SOURCE_DIR}/words/JetPattern.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/words/JetPattern.h
  ${CMAKE_CURRENT_SOURCE_DIR}/words/QueryDialect.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/words/QueryDialect.h
  ${CMAKE_CURRENT_SOURCE_DIR}/words/SqliteValue.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/words/SqliteValue.h
  ${CMAKE_CURRENT_SOURCE_DIR}/words/SqlToken.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/words/SqlToken.h
  ${CMAKE_CURRENT_SOURCE_DIR}/words/StatementCache.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/words/StatementCache.h
  ${CMAKE_CURRENT_SOURCE_DIR}/words/Transaction.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/words/WordDatabase.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/words/WordDatabase.h
)
list(APPEND KELVORA_CORE_SOURCES
  ${CMAKE_CURRENT_SOURCE_DIR}/words/RecordSet.h
  ${CMAKE_CURRENT_SOURCE_DIR}/words/RecordSet.cpp
)
