LINK = $(PRODUCT_PATH)/lib/current

links:
	mkdir -p $(PRODUCT_PATH)/lib
	rm -f $(LINK)
	ln -s /net/common/lib $(LINK)
	chgrp -h $(PRODUCT_GROUP) $(LINK)
	test "`id -u`" -ne 0 || chown -h $(PRODUCT_OWNER) $(LINK)
