# The file layer reads two kinds of outside YAML: "List Order.txt" in preset and plug-in folders,
# and the locations files of installed modules.
mirel_add_fuzz(list_order_fuzz SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/list_order_fuzz.cpp LIBS mirel_files)
mirel_add_fuzz(locations_fuzz SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/locations_fuzz.cpp LIBS mirel_files)
