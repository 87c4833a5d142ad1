file(WRITE ${OUTPUT} "")
