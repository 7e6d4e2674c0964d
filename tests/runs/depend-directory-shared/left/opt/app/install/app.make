include app.dat
server:
	@echo "$(STORE_NAME), $(STORE_TYPE), $(STORE_VERSION), $(STORE_PATH)" > $(PRODUCT_PATH)/server
client:
	@echo "$(STORE_NAME), $(STORE_TYPE), $(STORE_VERSION), $(STORE_PATH)" > $(PRODUCT_PATH)/client
