# The object type sources in the order kelmo-databuild reads them: record
# numbers run on from one file to the next.
set(KELMO_OBJECT_SOURCES
  ${CMAKE_CURRENT_LIST_DIR}/signature.txt
  ${CMAKE_CURRENT_LIST_DIR}/grounds.txt
  ${CMAKE_CURRENT_LIST_DIR}/walls.txt
  ${CMAKE_CURRENT_LIST_DIR}/furniture.txt
  ${CMAKE_CURRENT_LIST_DIR}/items.txt
  ${CMAKE_CURRENT_LIST_DIR}/outfits.txt
  ${CMAKE_CURRENT_LIST_DIR}/effects.txt
  ${CMAKE_CURRENT_LIST_DIR}/missiles.txt
)
