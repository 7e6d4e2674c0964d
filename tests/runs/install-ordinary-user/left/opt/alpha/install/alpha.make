include alpha.dat
greeting:
	echo "$(PRODUCT_OWNER) greets" > $(PRODUCT_PATH)/greeting
