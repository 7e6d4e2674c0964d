include alpha.dat
greeting:
	echo "access $(PRODUCT_ACCESS)" > $(PRODUCT_PATH)/greeting
