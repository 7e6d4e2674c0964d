include app.dat
program:
	@echo "$(STOODFOR_NAME), $(STOODFOR_TYPE), $(STOODFOR_VERSION), $(STOODFOR_PATH)" > $(PRODUCT_PATH)/program
