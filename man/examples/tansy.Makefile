BIN = $(PRODUCT_PATH)/bin
NEW = $(BIN) $(BIN)/tansy

.SILENT:
.PHONY: program

program:
	mkdir -p $(BIN)
	sed 's|@ALMANAC@|$(ALMANAC_PATH)|' ../src/tansy.in > $(BIN)/tansy
	chmod 755 $(NEW)
	test $(PRODUCT_ACCESS) -eq 1 || chmod o-rwx $(NEW)
	chgrp $(PRODUCT_GROUP) $(NEW)
	test "`id -u`" -ne 0 || chown $(PRODUCT_OWNER) $(NEW)
