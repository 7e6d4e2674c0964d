include alpha.dat
greeting:
	echo "hello from $(PRODUCT_NAME)" > $(PRODUCT_PATH)/greeting
