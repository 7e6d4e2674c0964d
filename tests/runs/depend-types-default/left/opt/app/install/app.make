include app.dat
program:
	@echo "$(STORE_NAME), $(STORE_TYPE), $(STORE_VERSION), $(STORE_PATH)" > $(PRODUCT_PATH)/program
