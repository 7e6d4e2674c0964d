include alpha.dat
greeting:
	echo "hello" > $(PRODUCT_PATH)/greeting
